// The help, as the real program shows it.
#include "app/ResultCode.h"
#include "tests/support/DialogProbe.h"
#include "tests/support/ForegroundLock.h"
#include "tests/support/LongTexts.h"
#include "tests/support/ProgramPath.h"
#include "tests/support/QuilletRun.h"
#include "tests/support/RealInput.h"
#include "tests/support/ScriptedHost.h"

#include <gtest/gtest.h>

#include <string>

namespace
{

/// A run that asks for help, with its message box.
class Help : public testing::Test
{
protected:
    static std::wstring TextOfControl(HWND box, int id)
    {
        std::wstring text(kLongestCommandLine + 2000, L'\0');
        const LRESULT size = ::SendDlgItemMessageW(box, id, WM_GETTEXT, text.size(),
                                                   reinterpret_cast<LPARAM>(text.data()));
        text.resize(static_cast<std::size_t>(size));
        return text;
    }

    /// The message box's text; the platform has no name for its id.
    static constexpr int kTextId = 0xFFFF;
};

TEST_F(Help, WinsOverEverythingElse)
{
    const ScriptedHost host(UniqueHost());
    const std::wstring arguments = L" -nodlg -activatewindow -seaglob -nam=\"what -?\" -kla=" +
                                   host.ClassName() + L" -copydata=abc -url=x?nam=%";
    const QuilletRun run(arguments);
    const HWND box = WaitForBox(run.Id(), L"Orvane");
    ASSERT_NE(box, nullptr);
    EXPECT_EQ(run.Dialog(), nullptr);
    EXPECT_EQ(::GetWindow(box, GW_OWNER), nullptr);

    const std::wstring text = TextOfControl(box, kTextId);
    EXPECT_NE(text.find(arguments + L"\n\n  -?\t\tHilfe\n"), std::wstring::npos);
    EXPECT_NE(text.find(L"  -lparam=...\tWert für den LParameter der Message \n"),
              std::wstring::npos);
    EXPECT_TRUE(text.ends_with(L"  \t-3\tFehler beim Senden der Message\n\n\n"));

    EXPECT_TRUE(run.IsRunning());
    if (ForegroundIsFree())
    {
        EXPECT_TRUE(ActInFront(
            box, [] { PressKey(VK_RETURN); }, [box] { return !::IsWindowVisible(box); }));
    }
    else
    {
        ::PostMessageW(box, WM_COMMAND, IDOK, 0);
    }
    EXPECT_EQ(run.WaitForExit(), kResultCancelled);
    EXPECT_TRUE(host.ReceivedSoFar().empty());
}

TEST_F(Help, HasOneButtonAndAnIcon)
{
    const QuilletRun run(L" -?");
    const HWND box = WaitForBox(run.Id(), L"Orvane");
    ASSERT_NE(box, nullptr);
    int buttons = 0;
    int icons = 0;
    for (HWND control = ::GetWindow(box, GW_CHILD); control != nullptr;
         control = ::GetWindow(control, GW_HWNDNEXT))
    {
        wchar_t className[16] = {};
        ::GetClassNameW(control, className, 16);
        const auto style = static_cast<DWORD>(::GetWindowLongW(control, GWL_STYLE));
        const bool shown = (style & WS_VISIBLE) != 0;
        buttons += shown && ::_wcsicmp(className, L"Button") == 0 ? 1 : 0;
        icons += shown && ::_wcsicmp(className, L"Static") == 0 && (style & SS_TYPEMASK) == SS_ICON;
    }
    EXPECT_EQ(buttons, 1);
    EXPECT_EQ(icons, 1);
    ::PostMessageW(box, WM_CLOSE, 0, 0);
    EXPECT_EQ(run.WaitForExit(), kResultCancelled);
}

TEST_F(Help, OfTheLongestLineIsShownWhole)
{
    const std::wstring line = LongestLine(L"q -? ", L"");
    const Process run(BuiltProgram(L"quillet.exe"), line);
    const HWND box = WaitForBox(run.Id(), L"Orvane");
    ASSERT_NE(box, nullptr);
    EXPECT_TRUE(TextOfControl(box, kTextId).starts_with(line + L"\n\n  -?"));
    ::PostMessageW(box, WM_CLOSE, 0, 0);
    EXPECT_EQ(run.WaitForExit(), kResultCancelled);
}

} // namespace
