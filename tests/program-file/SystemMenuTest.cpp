// The wait dialog's system menu. Under Wine a menu's handle is good in its own process only, so the
// dialog is made in this process, out of the program's own class and resources.
#include "delivery/QuilletDlg.h"
#include "res/resource.h"

#include <gtest/gtest.h>

namespace
{

TEST(SystemMenu, EndsWithASeparatorAndTheAboutEntry)
{
    const CWinApp app;
    CQuilletDlg dialog;
    ASSERT_TRUE(dialog.Create(IDD_QUILLET_DIALOG));
    const HMENU menu = ::GetSystemMenu(dialog.m_hWnd, FALSE);
    const auto last = static_cast<UINT>(::GetMenuItemCount(menu)) - 1;
    EXPECT_EQ(::GetMenuItemID(menu, static_cast<int>(last)), UINT{IDM_ABOUTBOX});
    wchar_t text[64];
    ::GetMenuStringW(menu, last, text, 64, MF_BYPOSITION);
    EXPECT_STREQ(text, L"Inf&o über Quillet...");
    EXPECT_TRUE(::GetMenuState(menu, last - 1, MF_BYPOSITION) & MF_SEPARATOR);
}

} // namespace
