// Switches on the longest command line that the platform lets a process have.
#include "app/ResultCode.h"
#include "tests/support/LongTexts.h"
#include "tests/support/ProgramPath.h"
#include "tests/support/QuilletRun.h"
#include "tests/support/ScriptedHost.h"

#include <gtest/gtest.h>

#include <string>

namespace
{

class LongestLineTest : public testing::Test
{
protected:
    int Run(const std::wstring& first, const std::wstring& last)
    {
        const std::wstring line = LongestLine(first, last);
        sent = line.substr(first.size(), line.size() - first.size() - last.size());
        const Process run(BuiltProgram(L"quillet.exe"), line);
        return run.WaitForExit().value_or(kStillRuns);
    }

    static constexpr int kStillRuns = 999'999;
    const ScriptedHost host{UniqueHost()};
    const std::wstring target = L" -kla=" + host.ClassName();
    /// What filled the line.
    std::wstring sent;
};

TEST_F(LongestLineTest, FlagIsFoundAtItsEnd)
{
    EXPECT_EQ(Run(L"q" + target + L" -copydata=a ", L" -nodlg"), kResultAccepted);
}

TEST_F(LongestLineTest, NumberIsFoundAtItsEnd)
{
    EXPECT_EQ(Run(L"q -nodlg" + target + L" ", L" -msg=5"), kResultCancelled);
    ASSERT_EQ(host.ReceivedSoFar().size(), 1u);
    EXPECT_EQ(host.ReceivedSoFar()[0].message, WM_USER + 5u);
}

TEST_F(LongestLineTest, TextIsFoundAtItsEnd)
{
    EXPECT_EQ(Run(L"q -nodlg ", target), kResultCancelled);
    EXPECT_EQ(host.ReceivedSoFar().size(), 1u);
}

TEST_F(LongestLineTest, CopyDataTextFillsIt)
{
    EXPECT_EQ(Run(L"q -nodlg" + target + L" -copydata=", L""), kResultAccepted);
    ASSERT_EQ(host.ReceivedSoFar().size(), 1u);
    EXPECT_EQ(host.ReceivedSoFar()[0].Text(), sent);
}

TEST_F(LongestLineTest, EncodingNameFillsIt)
{
    EXPECT_EQ(Run(L"q -nodlg" + target + L" -copydata=a -copydataencoding=", L""), kResultAccepted);
    ASSERT_EQ(host.ReceivedSoFar().size(), 1u);
    EXPECT_EQ(host.ReceivedSoFar()[0].Text(), L"a");
}

TEST_F(LongestLineTest, WindowTextFillsIt)
{
    EXPECT_EQ(Run(L"q -nodlg" + target + L" -nam=\"", L"\""), kResultWindowNotFound);
    EXPECT_TRUE(host.ReceivedSoFar().empty());
}

TEST_F(LongestLineTest, ClassNameFillsIt)
{
    EXPECT_EQ(Run(L"q -nodlg -kla=", L""), kResultWindowNotFound);
}

} // namespace
