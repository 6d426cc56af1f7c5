// The small host of the host guide.
#include "tests/support/Process.h"
#include "tests/support/ProgramPath.h"
#include "tests/support/QuilletRun.h"

#include <gtest/gtest.h>

#include <string>

namespace
{

/// In a process of its own.
class SmallHost : public testing::Test
{
protected:
    SmallHost() : m_process(BuiltProgram(L"small_host.exe"), L"small_host.exe")
    {
        EXPECT_TRUE(WaitUntil([this] { return Window() != nullptr; }));
    }

    HWND Window() const { return FindProcessWindow(m_process.Id(), L"SmallHost", nullptr); }

    std::wstring Title() const
    {
        wchar_t title[64];
        ::GetWindowTextW(Window(), title, 64);
        return title;
    }

private:
    Process m_process;
};

TEST_F(SmallHost, ShowsTheTextAndAnswers)
{
    EXPECT_EQ(RunQuillet(L" -kla=SmallHost -copydata=\"Vorgang 4711\""), 2);
    EXPECT_EQ(Title(), L"SmallHost: Vorgang 4711");
}

TEST_F(SmallHost, TakesATextThatNobodyWaitsFor)
{
    EXPECT_EQ(RunQuillet(L" -nodlg -kla=SmallHost -copydata=a"), 0);
    EXPECT_EQ(Title(), L"SmallHost: a");
}

TEST_F(SmallHost, RefusesWhatIsTooLongOrNoText)
{
    const std::wstring text(1001, L'a');
    EXPECT_EQ(RunQuillet(L" -nodlg -kla=SmallHost -copydata=" + text), -3);
    EXPECT_EQ(RunQuillet(L" -nodlg -kla=SmallHost -copydata=a -copydataencoding=UTF-8"), -3);
    EXPECT_EQ(Title(), L"SmallHost");
}

} // namespace
