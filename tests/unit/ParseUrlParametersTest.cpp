#include "app/QuilletApp.h"
#include "tests/unit/StringFailure.h"

#include <gtest/gtest.h>

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
        EXPECT_EQ(CQuilletApp::ParseUrlParameters(row.url), row.parameters)
            << "url: " << std::wstring(row.url);
    }
}

TEST(ParseUrlParameters, ComeFromTheFirstQuestionMarkThatSomethingFollows)
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
        {L"x?#?a=1", {{L"a", L"1"}}}, // nothing follows the first "?"
        {L"x? ?a=1", {{L"a", L"1"}}},
        {L"x#f?a=1", {{L"a", L"1"}}},
        {L"x?a=1?b=2", {{L"a", L"1?b=2"}}},
        {L"myproto://open/a&b=1?c=2", {{L"c", L"2"}}},
    });
}

TEST(ParseUrlParameters, EndAtABlankOrAFragment)
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

TEST(ParseUrlParameters, AreSeparatedByRunsOfAmpersandsAndSemicolons)
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

TEST(ParseUrlParameters, HaveKeysOfLettersDigitsAndUnderscores)
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
TEST(ParseUrlParameters, WithForeignLettersDoNotDisturbTheOthers)
{
    for (const wchar_t* key : {L"\u00E4", L"\u00C4pfel", L"\u03B1\u03B2", L"\u4E2D", L"\u0663",
                               L"\xD83D\xDE00", L"\xD83D", L"\xFFFF"})
    {
        UrlParameters parameters = CQuilletApp::ParseUrlParameters(
            (L"x?msg=1&" + std::wstring(key) + L"=2&kla=\u00E4").c_str());
        parameters.erase(key);
        EXPECT_EQ(parameters, (UrlParameters{{L"kla", L"\u00E4"}, {L"msg", L"1"}}));
    }
}

TEST(ParseUrlParameters, HaveEverythingAfterTheFirstEqualsSignAsValue)
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

TEST(ParseUrlParameters, AreDecodedInTheirValues)
{
    using namespace std::string_literals;
    ExpectParameters({
        {L"x?a=%3D%26%41-%c3%a4+", {{L"a", L"=&%41-\u00E4+"}}},
        {L"x?a=%0A&b=1%0D%0A2", {{L"a", L"\n"}, {L"b", L"1\r\n2"}}},
        {L"x?a=1%002&b=%00", {{L"a", L"1\0002"s}, {L"b", L"\0"s}}},
    });
}

TEST(ParseUrlParameters, WithARawLineBreakInTheValueAreDropped)
{
    ExpectParameters({
        {L"x?a=1\n2&b=3", {{L"b", L"3"}}},
        {L"x?a=1\r&b=3", {{L"b", L"3"}}},
        {L"x?a=\n&b=3", {{L"b", L"3"}}},
        {L"x?b=3\r\n", {}},
        {L"x?a=1\u2028&b=3", {{L"b", L"3"}}}, // these two end lines as well
        {L"x?a=\u20292&b=3", {{L"b", L"3"}}},
        {L"x?a=\x0085\x000B\x000C", {{L"a", L"\x0085\x000B\x000C"}}},
    });
}

TEST(ParseUrlParameters, KeepTheFirstOfEqualKeys)
{
    ExpectParameters({
        {L"x?msg=1&msg=2", {{L"msg", L"1"}}},
        {L"x?a&a=2", {{L"a", L""}}},
        {L"x?a-b=0&a=1;a=2", {{L"a", L"1"}}},
        {L"x?a=1\n&a=2", {{L"a", L"2"}}}, // the first is no pair
    });
}

TEST(ParseUrlParameters, WhoseDecodingRunsPastItsEndEndTheRun)
{
    for (const wchar_t* url : {L"x?a=%", L"x?a=1&b=%41%", L"x?a=%&b=1", L"x?a=1&a=%"})
    {
        try
        {
            CQuilletApp::ParseUrlParameters(url);
            ADD_FAILURE() << "no failure for " << std::wstring(url);
        }
        catch (StringFailure* exception)
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

} // namespace
