#include "app/UrlParameters.h"

#include "app/QuilletApp.h"
#include "app/SendRequest.h"
#include "tests/support/GatherRequest.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <string>
#include <vector>

namespace
{

struct UrlRow
{
    const wchar_t* url;
    UrlParameters parameters;
};

void ExpectParameters(const std::vector<UrlRow>& rows)
{
    for (const UrlRow& row : rows)
    {
        EXPECT_EQ(row.parameters, CQuilletApp::ParseUrlParameters(row.url))
            << "url: " << std::wstring(row.url);
    }
}

TEST(UrlParameters, ComeFromTheFirstQuestionMarkThatSomethingStandsBehind)
{
    ExpectParameters({
        {L"", {}},
        {L"x", {}},
        {L"x?", {}},
        {L"x?#frag", {}},
        {L"x? a=1", {}},
        {L"x?a=1", {{L"a", L"1"}}},
        {L"?a=1", {{L"a", L"1"}}},
        {L"x??a=1", {}}, // the query string is "?a=1", and its only item no pair
        {L"x??a=1&b=2", {{L"b", L"2"}}},
        {L"x?#?a=1", {{L"a", L"1"}}}, // the first "?" has nothing behind it
        {L"x? ?a=1", {{L"a", L"1"}}},
        {L"x#f?a=1", {{L"a", L"1"}}},
        {L"x?a=1?b=2", {{L"a", L"1?b=2"}}},
        {L"myproto://open/a&b=1?c=2", {{L"c", L"2"}}},
    });
}

TEST(UrlParameters, EndAtABlankOrAFragment)
{
    ExpectParameters({
        {L"x?a=1#b=2&c=3", {{L"a", L"1"}}},
        {L"x?a=1 b&c=3", {{L"a", L"1"}}},
        {L"x?a=1&#", {{L"a", L"1"}}},
        {L"x?nam=\"A B\"&msg=2", {{L"nam", L"\"A"}}},
        {L"x?a=1%23b", {{L"a", L"1#b"}}}, // escaped, it belongs to the value
        {L"x?a=1\tb&c=3", {{L"a", L"1\tb"}, {L"c", L"3"}}},
    });
}

TEST(UrlParameters, AreSeparatedByRunsOfAmpersandsAndSemicolons)
{
    ExpectParameters({
        {L"x?a;;b=1&&&c=2", {{L"a", L""}, {L"b", L"1"}, {L"c", L"2"}}},
        {L"x?&a=1;&;b=2&", {{L"a", L"1"}, {L"b", L"2"}}},
        {L"x?&", {}},
        {L"x?;&;&", {}},
        {L"x?a=1%26b=2%3Bc", {{L"a", L"1&b=2;c"}}}, // taken apart before decoding
        {L"x?a=1&amp;b=2", {{L"a", L"1"}, {L"amp", L""}, {L"b", L"2"}}}, // as HTML escapes it
        {L"x?a=1,b=2", {{L"a", L"1,b=2"}}},
    });
}

TEST(UrlParameters, HaveKeysOfLettersDigitsAndUnderscores)
{
    ExpectParameters({
        {L"x?a-b=1", {}},
        {L"x?=x", {}},
        {L"x?=", {}},
        {L"x?a%41=1", {}}, // keys are not decoded
        {L"x?%6Dsg=1", {}},
        {L"x?a.b=1&c+d=2&e%20=3&f[]=4", {}},
        {L"x?a_1=2&_=3&9=4", {{L"a_1", L"2"}, {L"_", L"3"}, {L"9", L"4"}}},
        {L"x?KLA=1&kla=2&Kla=3", {{L"KLA", L"1"}, {L"Kla", L"3"}, {L"kla", L"2"}}},
        {L"x?ABCXYZabcxyz0189=v", {{L"ABCXYZabcxyz0189", L"v"}}},
        {L"x?a\t=1", {}},
        {L"x?a\n=1", {}},
        {L"x?\na=1", {}},
        {L"x?a\u2014b=1", {}}, // a dash, whatever the library's letters are
        {L"x?a\u00A0b=1", {}},
    });
}

// Whether such a key is one is the standard library's decision. None is ever looked up, and nothing
// else may suffer from it.
TEST(UrlParameters, WithForeignLettersDoNotDisturbTheOthers)
{
    for (const wchar_t* key : {L"\u00E4", L"\u00C4pfel", L"\u03B1\u03B2", L"\u4E2D", L"\u0663",
                               L"\xD83D\xDE00", L"\xD83D", L"\xFFFF"})
    {
        UrlParameters parameters = CQuilletApp::ParseUrlParameters(
            (L"x?msg=1&" + std::wstring(key) + L"=2&kla=\u00E4").c_str());
        parameters.erase(key);
        EXPECT_EQ((UrlParameters{{L"kla", L"\u00E4"}, {L"msg", L"1"}}), parameters);
    }
}

TEST(UrlParameters, HaveEverythingBehindTheFirstEqualsSignAsValue)
{
    ExpectParameters({
        {L"x?kla=a=b", {{L"kla", L"a=b"}}},
        {L"x?a==", {{L"a", L"="}}},
        {L"x?a===b=", {{L"a", L"==b="}}},
        {L"x?a=", {{L"a", L""}}},
        {L"x?a", {{L"a", L""}}},
        {L"x?a=b?c/d:e@f", {{L"a", L"b?c/d:e@f"}}},
        {L"x?a=\u4E2D\xD83D\xDE00\xD83D", {{L"a", L"\u4E2D\xD83D\xDE00\xD83D"}}},
    });
}

TEST(UrlParameters, AreDecodedInTheirValues)
{
    using namespace std::string_literals;
    ExpectParameters({
        {L"x?a=%3D%26%41-%c3%a4+", {{L"a", L"=&%41-\u00E4+"}}},
        {L"x?a=%0A&b=1%0D%0A2", {{L"a", L"\n"}, {L"b", L"1\r\n2"}}},
        {L"x?a=1%002&b=%00", {{L"a", L"1\0002"s}, {L"b", L"\0"s}}},
    });
}

TEST(UrlParameters, WithARawLineBreakInTheValueAreDropped)
{
    ExpectParameters({
        {L"x?a=1\n2&b=3", {{L"b", L"3"}}},
        {L"x?a=1\r&b=3", {{L"b", L"3"}}},
        {L"x?a=\n&b=3", {{L"b", L"3"}}},
        {L"x?b=3\r\n", {}},
    });
}

TEST(UrlParameters, KeepTheFirstOfEqualKeys)
{
    ExpectParameters({
        {L"x?msg=1&msg=2", {{L"msg", L"1"}}},
        {L"x?a&a=2", {{L"a", L""}}},
        {L"x?a-b=0&a=1;a=2", {{L"a", L"1"}}},
        {L"x?a=1\n&a=2", {{L"a", L"2"}}}, // the first is no pair
    });
}

TEST(UrlParameters, WithAValueThatEndsInsideAnEscapeEndTheRun)
{
    for (const wchar_t* url : {L"x?a=%", L"x?a=1&b=%41%", L"x?a=%&b=1", L"x?a=1&a=%"})
    {
        try
        {
            CQuilletApp::ParseUrlParameters(url);
            ADD_FAILURE() << "no failure for " << std::wstring(url);
        }
        catch (CInvalidArgException* exception)
        {
            exception->Delete();
        }
    }
    ExpectParameters({
        {L"x?a-b=%&c=1", {{L"c", L"1"}}}, // dropped before it is decoded
        {L"x%?a=1#%", {{L"a", L"1"}}},
        {L"x?a=%4", {{L"a", L"%4"}}},
    });
}

struct LineRow
{
    const wchar_t* line;
    SendRequest request;
};

void ExpectRequests(const std::vector<LineRow>& rows)
{
    for (const LineRow& row : rows)
    {
        EXPECT_EQ(TextOf(row.request), TextOf(GatherRequest(row.line)))
            << "line: " << std::wstring(row.line);
    }
}

TEST(UrlRequest, OverridesTheSwitchesFieldByField)
{
    ExpectRequests({
        {L"q -url=myproto://open?kla=Notepad&msg=5",
         {.windowClass = L"Notepad", .messageOffset = 5}},
        {L"q -kla=A -nam=B -copydata=C -copydataencoding=D -msg=1 -wparam=2 -lparam=3 -url=x?y",
         {.windowClass = L"A",
          .windowText = L"B",
          .copyData = L"C",
          .copyDataEncoding = L"D",
          .messageOffset = 1,
          .wParam = 2,
          .lParam = 3}},
        {L"q -kla=A -nam=B -copydata=C -copydataencoding=D -msg=1 -wparam=2 -lparam=3 "
         L"-url=x?kla=a&nam=b&copydata=c&copydataencoding=d&msg=4&wparam=5&lparam=6",
         {.windowClass = L"a",
          .windowText = L"b",
          .copyData = L"c",
          .copyDataEncoding = L"d",
          .messageOffset = 4,
          .wParam = 5,
          .lParam = 6}},
        {L"q -url=x?kla=a -kla=A", {.windowClass = L"a"}}, // also when the switch comes later
        {L"q -kla=A -nam=B -url=x?kla=a", {.windowClass = L"a", .windowText = L"B"}},
        {L"q -kla=A -nam=B -url=x?nam=b", {.windowClass = L"A", .windowText = L"b"}},
        {L"q -copydata=C -url=x?copydataencoding=UTF-8",
         {.copyData = L"C", .copyDataEncoding = L"UTF-8"}},
        {L"q -msg=1 -url=x?lparam=-6", {.messageOffset = 1, .lParam = -6}},
        {L"q -wparam=1 -url=x?wparam=0", {.wParam = 0}},
        {L"q -kla=A -url=x?kla=", {}}, // an empty value empties the field
        {L"q -kla=A -url=x?kla", {}},
        {L"q -kla=A -url=x?kla=%22%22", {}},
        {L"q -kla=A -url=x?KLA=a&Kla=b&unknown=c", {.windowClass = L"A"}},
        {L"q -kla=A -url=\"\"", {.windowClass = L"A"}},
        {L"q -kla=A -url=", {.windowClass = L"A"}},
        {L"q -url=x?msg=1 -nodlg", {.messageOffset = 1, .noDialog = true}},
    });
}

TEST(UrlRequest, SetsFlagsAndNeverClearsThem)
{
    ExpectRequests({
        {L"q -url=x?nodlg", {.noDialog = true}},
        {L"q -url=x?nodlg=", {.noDialog = true}},
        {L"q -url=x?nodlg=0", {.noDialog = true}},
        {L"q -url=x?activatewindow=false", {.activateWindow = true}},
        {L"q -url=x?seaglob=%30", {.globSearch = true}},
        {L"q -url=x?NODLG&nodlgx&SeaGlob=1", {}},
        {L"q -nodlg -activatewindow -seaglob -url=x?nodlg=0&activatewindow=0&seaglob=0",
         {.noDialog = true, .activateWindow = true, .globSearch = true}},
        {L"q -nodlg -activatewindow -seaglob -url=x?msg=1",
         {.messageOffset = 1, .noDialog = true, .activateWindow = true, .globSearch = true}},
        {L"q -nodlg -url=x?seaglob", {.noDialog = true, .globSearch = true}},
    });
}

TEST(UrlRequest, ReadsNumbersFromTheDecodedValue)
{
    ExpectRequests({
        {L"q -url=x?msg=1&msg=2", {.messageOffset = 1}},
        {L"q -url=x?msg=0x10", {.messageOffset = 16}},
        {L"q -url=x?msg=0X1f", {.messageOffset = 31}},
        {L"q -url=x?msg=010", {.messageOffset = 8}},
        {L"q -url=x?msg=08", {.messageOffset = 0}},
        {L"q -url=x?msg=-3", {.messageOffset = -3}},
        {L"q -url=x?msg=+3", {.messageOffset = 3}},
        {L"q -url=x?msg=%2B3", {.messageOffset = 3}},
        {L"q -url=x?msg=%20%099", {.messageOffset = 9}}, // white space is skipped
        {L"q -url=x?msg=7abc", {.messageOffset = 7}},
        {L"q -url=x?msg=7%3D8", {.messageOffset = 7}},
        {L"q -url=x?msg=7%008", {.messageOffset = 7}}, // a zero ends the number
        {L"q -msg=4 -url=x?msg=abc", {.messageOffset = 4}},
        {L"q -msg=4 -url=x?msg=", {.messageOffset = 4}},
        {L"q -msg=4 -url=x?msg", {.messageOffset = 4}},
        {L"q -msg=4 -url=x?msg=%225%22", {.messageOffset = 4}}, // quotes are not for numbers
        {L"q -msg=4 -url=x?msg=%35", {.messageOffset = 4}},     // digits are not restored
        {L"q -msg=4 -url=x?msg=%00", {.messageOffset = 4}},
        {L"q -url=x?wparam=0x7fffffffffffffff&lparam=-9223372036854775808",
         {.wParam = 0x7FFF'FFFF'FFFF'FFFF, .lParam = -0x7FFF'FFFF'FFFF'FFFF - 1}},
        {L"q -url=x?msg=2147483647&wparam=4294967296",
         {.messageOffset = 2147483647, .wParam = 0x1'0000'0000}},
    });
}

TEST(UrlRequest, TrimsTextsAfterDecoding)
{
    using namespace std::string_literals;
    ExpectRequests({
        {L"q -url=x?nam=Mein%20Fenster", {.windowText = L"Mein"}},
        {L"q -url=x?nam=%22Mein%20Fenster%22", {.windowText = L"Mein Fenster"}},
        {L"q -url=x?nam=%22Mein%20Fenster", {.windowText = L"Mein Fenster"}},
        {L"q -url=x?nam=%22a%22b", {.windowText = L"a"}},
        {L"q -url=x?nam=a%22b%20c%22", {.windowText = L"a\"b"}},
        {L"q -url=x?nam=a%09b%0A", {.windowText = L"a\tb\n"}},
        {L"q -nam=A -url=x?nam=%20a", {}},
        {L"q -url=\"x?nam=\"A B\"&msg=2\" -nodlg", {.windowText = L"A", .noDialog = true}},
        {L"q -url=\"x?nam=\"AB\"&msg=2\" -nodlg",
         {.windowText = L"AB", .messageOffset = 2, .noDialog = true}},
        {L"q -url=x?copydata=a%00b", {.copyData = L"a\0b"s}},
        {L"q -url=x?kla=HostFrame&copydata=open&copydataencoding=UTF-8",
         {.windowClass = L"HostFrame", .copyData = L"open", .copyDataEncoding = L"UTF-8"}},
        {L"q -url=x?copydata=M%C3%BCll", {.copyData = L"M\u00FCll"}},
        {L"q -url=x?copydata=%E2%82%AC", {.copyData = L"\xFFFD%AC"}}, // three bytes are no pair
    });
}

// What a link with a quote does to the command line that a handler's registration builds.
TEST(UrlRequest, ReadsSwitchesBehindAQuoteInTheLink)
{
    ExpectRequests({
        {L"q -url=\"demo:x?msg=1\" -nodlg -kla=Other\"",
         {.windowClass = L"Other\"", .messageOffset = 1, .noDialog = true}},
        {L"q -url=\"demo:x?msg=1 -nodlg\"",
         {.messageOffset = 1, .noDialog = true}}, // a blank suffices
        {L"q -url=\"demo:x?msg=1%22%20-nodlg\"", {.messageOffset = 1}},
    });
}

} // namespace
