#include "app/CommandLine.h"

#include "tests/support/LongTexts.h"

#include <gtest/gtest.h>

namespace
{

TEST(CommandLine, KeepsTheLineAsTyped)
{
    EXPECT_EQ(CommandLine(L"\"C:\\Q\\Quillet.EXE\"  -Nam=\u00C4").Raw(),
              L"\"C:\\Q\\Quillet.EXE\"  -Nam=\u00C4");
    EXPECT_EQ(CommandLine(L"").Raw(), L"");
}

TEST(CommandLine, FindsASwitchInAnyLetterCase)
{
    EXPECT_TRUE(CommandLine(L"q -nodlg").Has(L" -nodlg"));
    EXPECT_TRUE(CommandLine(L"q -NODLG").Has(L" -nodlg"));
    EXPECT_TRUE(CommandLine(L"q -NoDlg").Has(L" -nodlg"));
    EXPECT_FALSE(CommandLine(L"q -nodl").Has(L" -nodlg"));
    EXPECT_FALSE(CommandLine(L"").Has(L" -nodlg"));
}

TEST(CommandLine, FindsASwitchOnlyAfterABlank)
{
    EXPECT_FALSE(CommandLine(L"-nodlg").Has(L" -nodlg"));
    EXPECT_FALSE(CommandLine(L"q\t-nodlg").Has(L" -nodlg"));
    EXPECT_FALSE(CommandLine(L"q\u00A0-nodlg").Has(L" -nodlg"));
    EXPECT_FALSE(CommandLine(L"q \"-nodlg\"").Has(L" -nodlg"));
    EXPECT_TRUE(CommandLine(L" -nodlg").Has(L" -nodlg"));
}

// Another letter that is lower-cased to one of A to Z makes no switch.
TEST(CommandLine, LowersAToZOnly)
{
    EXPECT_FALSE(CommandLine(L"q -\u212Ala=x").Has(L" -kla="));   // the Kelvin sign
    EXPECT_FALSE(CommandLine(L"q -W\u0130DE=x").Has(L" -wide=")); // the I with a dot
    EXPECT_FALSE(CommandLine(L"q -\uFF2Bla=x").Has(L" -kla="));   // a full-width K
    EXPECT_STREQ(CommandLine(L"q -nam=\u00C4\u212A\u0410Z").LowerAfter(L" -nam="),
                 L"\u00C4\u212A\u0410z");
}

TEST(CommandLine, GivesWhatFollowsTheFirstOccurrence)
{
    const CommandLine line(L"q -KLA=Abc -kla=D");
    EXPECT_EQ(line.After(L" -kla="), L"Abc -kla=D");
    EXPECT_STREQ(line.LowerAfter(L" -kla="), L"abc -kla=d");
}

TEST(CommandLine, GivesNothingAfterASwitchAtTheEnd)
{
    const CommandLine line(L"q -kla=");
    EXPECT_EQ(line.After(L" -kla="), L"");
    EXPECT_STREQ(line.LowerAfter(L" -kla="), L"");
}

TEST(CommandLine, TellsAMissingSwitchFromAnEmptyOne)
{
    const CommandLine line(L"q -kla");
    EXPECT_EQ(line.After(L" -kla="), std::nullopt);
    EXPECT_EQ(line.LowerAfter(L" -kla="), nullptr);
}

TEST(CommandLine, PositionsStayTheSameBesideSurrogatePairs)
{
    EXPECT_EQ(CommandLine(L"\U0001F600\u0130\u1E9E -NAM=X\U0001F600").After(L" -nam="),
              L"X\U0001F600");
}

TEST(CommandLine, FindsASwitchAtTheEndOfTheLongestLine)
{
    const std::wstring_view end = L" -Nam=x";
    const std::wstring text =
        std::wstring(kLongestCommandLine - end.size(), L'A') + std::wstring(end);
    const CommandLine line(text.c_str());
    EXPECT_EQ(line.Raw().size(), kLongestCommandLine);
    EXPECT_EQ(line.After(L" -nam="), L"x");
}

} // namespace
