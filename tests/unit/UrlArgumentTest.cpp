#include "app/UrlArgument.h"

#include "app/CommandLine.h"
#include "tests/support/PlainUrl.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <string>

namespace
{

std::wstring Cut(const std::wstring& line)
{
    return CutUrlArgument(CommandLine(line.c_str()));
}

struct ArgumentRow
{
    const wchar_t* line;
    const wchar_t* url;
};

template <std::size_t N>
void ExpectArguments(const ArgumentRow (&rows)[N])
{
    for (const ArgumentRow& row : rows)
    {
        EXPECT_EQ(Cut(row.line), row.url) << "line: " << std::wstring(row.line);
    }
}

TEST(UrlArgument, IsFoundAfterABlankInAnyLetterCase)
{
    ExpectArguments({
        {L"q -url=x?msg=1", L"x?msg=1"},
        {L"q -URL=x?Msg=A", L"x?Msg=A"}, // the URL itself keeps its letter case
        {L"q -uRl=X", L"X"},
        {L"q", L""},
        {L"-url=x", L""},
        {L"q\t-url=x", L""},
        {L"q --url=x", L""},
        {L"q /url=x", L""},
        {L"q \"-url=x\"", L""}, // as a launcher writes it that quotes whole arguments
        {L"q -url x", L""},
        {L"q -url =x", L""},
        {L"q -url=a -url=b", L"a"},
        {L"q -nam=\"b -url=a", L"a"}, // inside another switch's value as well
        {L"q -kla=\u00C4\u0130 -url=x", L"x"},
        {L"q -\u212Aurl=y -url=x", L"x"},
    });
}

TEST(UrlArgument, UnquotedEndsAtTheFirstBlank)
{
    ExpectArguments({
        {L"q -url=x?msg=1 -nodlg", L"x?msg=1"},
        {L"q -url=x\ty\nz w", L"x\ty\nz"},
        {L"q -url=x\"y z\"", L"x\"y"}, // a quote further on is nothing special
        {L"q -url=x=\"y z\"", L"x=\"y"},
        {L"q -url=", L""},
        {L"q -url= x", L""},
    });
}

TEST(UrlArgument, QuotedEndsAtTheFirstQuoteThatOpensNoValue)
{
    ExpectArguments({
        {L"q -url=\"x?nam=a b\" -nodlg", L"x?nam=a b"},
        {L"q -url=\"x?nam=\"A B\"&msg=2\" -nodlg", L"x?nam=\"A B\"&msg=2"},
        {L"q -url=\"x?a=\"1\"&b=\"2\"\" \"y\"", L"x?a=\"1\"&b=\"2\""},
        {L"q -url=\"\"", L""},
        {L"q -url=\"\" x\"", L""},
        {L"q -url=\"x\"\"", L"x"},
        {L"q -url=\"x\"=\"y\"", L"x"},
    });
}

TEST(UrlArgument, QuoteRightAfterTheBeginningClosesInSpiteOfAnEqualsSign)
{
    ExpectArguments({
        {L"q -url=\"=\"a\"", L"="},
        {L"q -url=\"a=\"b\"", L"a=\"b\""}, // the first place where a value can open
        {L"q -url=\"a=\"b\"c\"", L"a=\"b\"c"},
    });
}

TEST(UrlArgument, WithoutClosingQuoteReachesToTheEndOfTheLine)
{
    ExpectArguments({
        {L"q -url=\"x?msg=1 -nodlg", L"x?msg=1 -nodlg"},
        {L"q -url=\"", L""},
        {L"q -url=\"a=\"b -nodlg", L"a=\"b -nodlg"}, // opened, never closed
        {L"q -url=\"a=\"b\" -nodlg", L"a=\"b\" -nodlg"},
        {L"q -url=\"a=\"", L"a=\""},
        {L"q -url=\"a=\"b=\"c", L"a=\"b=\"c"}, // the second quote closes the value
    });
}

// Every text of up to nine units, so that quotes stand in every position to each other.
TEST(UrlArgument, IsCutAsThePlainRulesSayForAllShortTexts)
{
    constexpr wchar_t kAlphabet[] = {L'"', L'=', L' ', L'a'};
    constexpr std::size_t kLongest = 9;
    int compared = 0;
    for (std::size_t length = 0; length <= kLongest; ++length)
    {
        for (unsigned number = 0; number < 1u << (2 * length); ++number)
        {
            std::wstring raw;
            for (std::size_t place = 0; place < length; ++place)
            {
                raw += kAlphabet[number >> (2 * place) & 3];
            }
            ASSERT_EQ(Cut(L"q -url=" + raw), plain::CutUrl(raw)) << "value: " << raw;
            ++compared;
        }
    }
    EXPECT_EQ(compared, 349'525);
}

} // namespace
