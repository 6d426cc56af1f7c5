// URLs that fill the longest command line there is.
#include "app/QuilletApp.h"
#include "tests/support/LongTexts.h"
#include "tests/support/PlainGathering.h"
#include "tests/support/RequestOf.h"
#include "tests/unit/DeathTest.h"
#include "tests/unit/StringFailure.h"

#include <malloc.h>

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdlib>
#include <iostream>
#include <string>
#include <string_view>
#include <vector>

namespace
{

/// `begin`, as many whole repetitions of `part` as there is room for, and `end`.
std::wstring Fill(const std::wstring& begin, std::wstring_view part, const std::wstring& end = {})
{
    std::wstring line = L"quillet.exe -nodlg -url=" + begin;
    while (line.size() + part.size() + end.size() <= kLongestCommandLine)
    {
        line += part;
    }
    return line + end;
}

TEST(LongUrl, CarriesOneHugeValue)
{
    const std::wstring line = Fill(L"x?copydata=", L"v");
    ASSERT_EQ(line.size(), kLongestCommandLine);
    const SendRequest request = RequestOf(line);
    EXPECT_EQ(request.copyData, std::wstring(kLongestCommandLine - 35, L'v'));
    EXPECT_TRUE(request.noDialog);
}

TEST(LongUrl, CarriesTenThousandParameters)
{
    const std::wstring many = Repeated(L"a=&", 10'000);
    const SendRequest request = RequestOf(L"q -url=x?msg=1&" + many + L"msg=2&wparam=7&kla=last");
    EXPECT_EQ(TextOf(request), TextOf({.windowClass = L"last", .messageOffset = 1, .wParam = 7}));

    std::wstring different;
    for (int number = 0; number < 5'000; ++number)
    {
        different += L"&" + std::to_wstring(number);
    }
    const UrlParameters parameters = CQuilletApp::ParseUrlParameters((L"?" + different).c_str());
    EXPECT_EQ(parameters.size(), 5'000u);
    EXPECT_TRUE(parameters.contains(L"0") && parameters.contains(L"4999"));
}

TEST(LongUrl, MayConsistOfSeparators)
{
    EXPECT_EQ(RequestOf(Fill(L"x?", L"&")).windowClass, L"");
    EXPECT_EQ(RequestOf(Fill(L"x?", L"&", L"kla=a")).windowClass, L"a");
    EXPECT_EQ(RequestOf(Fill(L"x?kla=a", L";&", L"kla=b")).windowClass, L"a");
}

TEST(LongUrl, MayConsistOfEscapes)
{
    const std::wstring quoted = Fill(L"x?copydata=%22", L"%20", L"%22");
    const std::size_t blanks = (kLongestCommandLine - 35 - 6) / 3;
    EXPECT_EQ(RequestOf(quoted).copyData, std::wstring(blanks, L' '));

    const std::wstring pairs = Fill(L"x?copydata=", L"%c3%A4");
    EXPECT_EQ(RequestOf(pairs).copyData, std::wstring((kLongestCommandLine - 35) / 6, L'\u00E4'));

    const std::wstring kept = Fill(L"x?copydata=", L"%41-");
    EXPECT_EQ(RequestOf(kept).copyData, Repeated(L"%41-", (kLongestCommandLine - 35) / 4));
}

TEST(LongUrl, MayBeOneHugeItemWithoutEqualsSign)
{
    const std::wstring line = Fill(L"x?", L"k");
    EXPECT_EQ(TextOf(RequestOf(line)), TextOf({.noDialog = true}));
    const std::wstring url = line.substr(line.find(L"x?"));
    EXPECT_EQ(CQuilletApp::ParseUrlParameters(url.c_str()), (UrlParameters{{url.substr(2), L""}}));
}

TEST(LongUrl, EndsTheRunWhenItsLastUnitIsAPercentSign)
{
    try
    {
        RequestOf(Fill(L"x?copydata=", L"%20", L"%"));
        FAIL();
    }
    catch (StringFailure* exception)
    {
        exception->Delete();
    }
}

struct Shape
{
    const char* name;
    std::wstring line;
};

/// What is hard on some part of the way: long runs, runs that are given up again at their end, and
/// runs that begin anew at every unit.
std::vector<Shape> HardShapes()
{
    return {
        {"one value", Fill(L"x?copydata=", L"v")},
        {"one value of foreign letters", Fill(L"x?copydata=", L"\u4E2D")},
        {"one key", Fill(L"x?", L"k")},
        {"one key of foreign letters", Fill(L"x?", L"\u00E4")},
        {"one key, then no key", Fill(L"x?", L"k", L"-")},
        {"one key with a value", Fill(L"x?", L"k", L"=v")},
        {"one value, then a line break", Fill(L"x?copydata=", L"v", L"\n")},
        {"one item that is no pair", Fill(L"x?", L"-")},
        {"separators", Fill(L"x?", L"&")},
        {"separators of both kinds", Fill(L"x?", L";&", L"kla=a")},
        {"separators inside a value", Fill(L"x?kla=", L"v&")},
        {"pairs", Fill(L"x?", L"a=&")},
        {"keys", Fill(L"x?", L"a;")},
        {"escapes", Fill(L"x?copydata=", L"%20")},
        {"pairs of escapes", Fill(L"x?copydata=", L"%c3%a4")},
        {"escapes that stay", Fill(L"x?copydata=", L"%41-")},
        {"percent signs", Fill(L"x?copydata=", L"%", L"x")},
        {"equals signs", Fill(L"x?a", L"=")},
        {"question marks", Fill(L"", L"?")},
        {"question marks without query", Fill(L"", L"?#")},
        {"question marks, then a query", Fill(L"", L"?#", L"?kla=a")},
        {"no question mark", Fill(L"", L"u")},
        {"fragment", Fill(L"x?kla=a#", L"f")},
        {"quotes", Fill(L"x?kla=", L"\"")},
        {"quoted values", Fill(L"\"x?kla=", L"=\"\"")},
        {"quoted, never closed", Fill(L"\"x?kla=v", L" =\"v")},
        {"switches", Fill(L"x?kla=", L"-url=x?kla=")},
        {"half keys, half separators", Fill(L"x?" + Repeated(L"k", 16'000), L"&", L"kla=a")},
        {"half value, half key", Fill(L"x?kla=" + Repeated(L"v", 16'000) + L"&", L"k")},
    };
}

TEST(LongUrl, IsGatheredAsThePlainRulesSay)
{
    for (const Shape& shape : HardShapes())
    {
        ASSERT_LE(shape.line.size(), kLongestCommandLine);
        ASSERT_GT(shape.line.size(), kLongestCommandLine - 16);
        EXPECT_EQ(TextOf(RequestOf(shape.line)), TextOf(plain::Gather(shape.line))) << shape.name;
    }
}

#ifdef __GLIBCXX__ // this library's way to match that takes the same stack for any text
constexpr std::size_t kSmallStack = std::size_t{256} << 10;

/// Runs the job with that much stack, in bytes, and not more: the rest is taken first.
void RunWithStack(std::size_t left, void (*job)())
{
    ULONG_PTR low = 0;
    ULONG_PTR high = 0;
    ::GetCurrentThreadStackLimits(&low, &high);
    const std::size_t rest = reinterpret_cast<ULONG_PTR>(&low) - low;
    auto* const taken = static_cast<volatile char*>(::_alloca(rest - left));
    job();
    *taken = '\0'; // used to the end, or the compiler would give it back before the job
}

/// Under Wine a process whose stack overflows ends with 0.
constexpr int kGathered = 42;

using LongUrlDeathTest = DeathTest;

// An overflow of the stack ends the process, so another one tries. The last shape that it names is
// the one that needs more.
TEST_F(LongUrlDeathTest, NeedsLittleStack)
{
    EXPECT_EXIT(
        {
            static const std::wstring* line;
            for (const Shape& shape : HardShapes())
            {
                std::cerr << shape.name << std::endl;
                line = &shape.line;
                RunWithStack(kSmallStack, [] { RequestOf(*line); });
            }
            std::_Exit(kGathered);
        },
        testing::ExitedWithCode(kGathered), "half value, half key");
}
#endif

} // namespace
