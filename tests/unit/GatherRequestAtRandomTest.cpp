// The whole way from the raw command line to the request, judged by the plain rules.
#include "app/QuilletApp.h"
#include "tests/support/PlainGathering.h"
#include "tests/support/RandomSeed.h"
#include "tests/support/RequestOf.h"
#include "tests/unit/StringFailure.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <optional>
#include <random>
#include <string>
#include <string_view>
#include <vector>

namespace
{

// The checked build is slower, and the shipped one has the same logic.
#ifdef QUILLET_CHECKED
constexpr int kRandomLines = 20'000;
constexpr int kMutatedLines = 10'000;
constexpr std::size_t kLargestCorpus = 500;
#else
constexpr int kRandomLines = 50'000;
constexpr int kMutatedLines = 25'000;
constexpr std::size_t kLargestCorpus = 1'000;
#endif

/// How the compared lines ended, to see that the comparison says something.
struct Tally
{
    int lines = 0;
    int help = 0;
    int abnormalEnds = 0;
    int fromUrl = 0;
    int fromQuotedUrl = 0;

    void Print() const
    {
        std::printf("%d lines: %d help, %d abnormal ends, %d requests changed "
                    "by the URL, %d of them by a quoted one\n",
                    lines, help, abnormalEnds, fromUrl, fromQuotedUrl);
    }
};

/// Nothing when decoding a value runs past its end.
std::optional<SendRequest> ProgramsRequest(const std::wstring& line)
{
    try
    {
        return RequestOf(line);
    }
    catch (StringFailure* exception)
    {
        exception->Delete();
        return std::nullopt;
    }
}

std::optional<SendRequest> PlainRequest(const std::wstring& line)
{
    try
    {
        return plain::Gather(line);
    }
    catch (const plain::ReadBeyondEnd&)
    {
        return std::nullopt;
    }
}

void Compare(const std::wstring& line, Tally& tally)
{
    ++tally.lines;
    const bool asksForHelp = plain::AsksForHelp(line);
    ASSERT_EQ(AsksForHelp(CommandLine(line.c_str())), asksForHelp) << "line: " << line;
    tally.help += asksForHelp;

    const auto expected = PlainRequest(line);
    const auto actual = ProgramsRequest(line);
    ASSERT_EQ(actual.has_value(), expected.has_value()) << "line: " << line;
    if (!expected)
    {
        ++tally.abnormalEnds;
        return;
    }
    ASSERT_EQ(TextOf(*actual), TextOf(*expected)) << "line: " << line;

    const auto url = plain::After(line, L" -url=");
    if (url && TextOf(*expected) != TextOf(plain::GatherSwitches(line)))
    {
        ++tally.fromUrl;
        tally.fromQuotedUrl += url->starts_with(L'"');
    }
}

using Parts = std::vector<std::wstring_view>;

// What stands where in a line that means something.
const Parts kSwitches{
    L" -nodlg",     L" -activatewindow", L" -seaglob",     L" -msg=5",
    L" -MSG=0x1F",  L" -lparam=-7",      L" -kla=A",       L" -kla=\"A B\"",
    L" -nam=",      L" -copydata=c d",   L" -nam=\"o",     L" -copydataencoding=UTF-8",
    L" -wParam=08", L"\t-nodlg",         L" -url=y?nam=2", L" -url"};
const Parts kOpenings{L" -url=",   L" -url=",    L" -URL=",      L" -url=\"",
                      L" -url=\"", L" -uRl=\"=", L" -url=\"a=\""};
const Parts kBeginnings{L"demo:?", L"x?", L"x?", L"?", L"x??", L"x?#?", L"x#?", L"x", L"x ?"};
const Parts kKeys{
    L"nodlg",    L"activatewindow",   L"seaglob", L"msg", L"lparam", L"wparam", L"kla", L"nam",
    L"copydata", L"copydataencoding", L"KLA",     L"a",   L"_1",     L"",       L"a-b", L"m%73g"};
const Parts kAssignments{L"=", L"=", L"=", L"=", L"", L"==", L"=\"", L"=%22"};
const Parts kValues{L"a",          L"Z",      L"5",   L"-12",        L"0x1f",
                    L"017",        L"%20",    L"%22", L"%3D",        L"%c3%a4",
                    L"%DF%bf",     L"%E4%f6", L"%41", L"%25",        L"%1F",
                    L"%00",        L"%0A",    L"0x",  L"0xFFfffc00", L"-0x123456789abcdef01",
                    L"4294967295", L"%",      L"%4",  L"%g1",        L"+",
                    L"=",          L"?",      L"\"",  L"\u2028",     L"\u2029",
                    L"\n",         L"\r",     L"\t",  L"*",          L"\u20AC",
                    L"%26"};
const Parts kSeparators{L"&", L"&", L"&", L";", L"&&;", L"#", L" ", L"\"&", L"%22&", L"\" "};

// What stands anywhere in a line that means nothing.
const Parts kUnits{L"%",    L"&",     L";",       L"=",   L"?",      L"#",        L"\"",
                   L" ",    L"%2",    L"0",       L"a",   L"C",      L"-",        L"x",
                   L"\n",   L"_",     L"%20",     L"%22", L"%3d",    L"%C3%A4",   L"%41",
                   L"%25",  L"nodlg", L"msg",     L"kla", L"nam",    L"copydata", L"msg=",
                   L"kla=", L"nam=",  L"wparam=", L" -",  L" -url=", L" -kla=",   L" -msg=",
                   L" -?",  L"5",     L"x?"};

class LineMaker
{
public:
    explicit LineMaker(std::mt19937::result_type seed) : m_random(seed) {}

    std::size_t Below(std::size_t limit) { return m_random() % limit; }

    std::wstring WellFormed()
    {
        std::wstring line = L"quillet.exe";
        Add(line, kSwitches, Below(4));
        Add(line, kOpenings, 1);
        Add(line, kBeginnings, 1);
        for (std::size_t items = Below(7); items > 0; --items)
        {
            Add(line, kKeys, 1);
            Add(line, kAssignments, 1);
            Add(line, kValues, Below(5));
            Add(line, kSeparators, 1);
        }
        Add(line, kSwitches, Below(3));
        return line;
    }

    std::wstring Arbitrary()
    {
        std::wstring line = L"q";
        if (Below(8) != 0)
        {
            Add(line, kOpenings, 1);
        }
        Add(line, kUnits, Below(40));
        return line;
    }

    /// One line changed in a few places, now and then with a part of another.
    std::wstring Mutated(std::wstring line, const std::wstring& other)
    {
        for (std::size_t changes = 1 + Below(4); changes > 0; --changes)
        {
            const std::size_t place = Below(line.size() + 1);
            const std::size_t length = Below(6);
            switch (Below(5))
            {
            case 0:
                line.erase(place, length);
                break;
            case 1:
                line.insert(place, kUnits[Below(kUnits.size())]);
                break;
            case 2:
                line.insert(place, line.substr(Below(line.size() + 1), 4 * length));
                break;
            case 3:
                line.insert(place, other.substr(Below(other.size() + 1), 4 * length));
                break;
            default:
                line.replace(place, length, kValues[Below(kValues.size() - 2)]);
                break;
            }
        }
        return line.substr(0, kLongest);
    }

private:
    static constexpr std::size_t kLongest = 300;

    void Add(std::wstring& line, const Parts& parts, std::size_t count)
    {
        for (; count > 0; --count)
        {
            line += parts[Below(parts.size())];
        }
    }

    std::mt19937 m_random;
};

TEST(GatherRequestAtRandom, AgreesWithThePlainRulesOnRandomLines)
{
    LineMaker maker(RandomSeed());
    Tally tally;
    while (tally.lines < kRandomLines && !HasFatalFailure())
    {
        Compare(tally.lines % 4 == 0 ? maker.Arbitrary() : maker.WellFormed(), tally);
    }
    tally.Print();
    // Otherwise the lines are poorly made and the agreement says little.
    EXPECT_GT(tally.fromUrl, kRandomLines / 4);
    EXPECT_GT(tally.fromQuotedUrl, kRandomLines / 10);
    EXPECT_GT(tally.abnormalEnds, kRandomLines / 200);
}

// A search guided by results: a line whose request no line before gave joins the corpus, and the
// next ones are made by changing lines of the corpus. Every other one is made of the lines it began
// with: by chance the corpus may come from a single one of them, and that one may have no URL.
TEST(GatherRequestAtRandom, AgreesWithThePlainRulesOnMutatedLines)
{
    std::vector<std::wstring> corpus{
        L"q -url=demo://open?kla=Notepad&msg=5",
        L"q -URL=\"x?nam=\"A B\"&msg=2\" -nodlg",
        L"q -url=\"x?nam=%22Mein%20Fenster%22&copydata=%c3%a4%41%25\"",
        L"q -nodlg -kla=A -url=x?a;;b=1&&&c=2#frag",
        L"q -url=x?lparam=0x10&wparam=-3;seaglob;activatewindow=0&copydataencoding=UTF-8",
        L"q -url=x?copydata=%0A%00%1F%7F&msg=%",
    };
    const std::size_t beginning = corpus.size();
    std::vector<std::wstring> seen;
    LineMaker maker(RandomSeed());
    Tally tally;
    while (tally.lines < kMutatedLines && !HasFatalFailure())
    {
        const std::size_t parents = tally.lines % 2 == 0 ? beginning : corpus.size();
        const std::wstring& parent = corpus[maker.Below(parents)];
        const std::wstring line = maker.Mutated(parent, corpus[maker.Below(corpus.size())]);
        Compare(line, tally);
        const auto request = ProgramsRequest(line);
        const std::wstring result = request ? TextOf(*request) : L"abnormal end";
        const auto place = std::lower_bound(seen.begin(), seen.end(), result);
        if (corpus.size() < kLargestCorpus && (place == seen.end() || *place != result))
        {
            seen.insert(place, result);
            corpus.push_back(line);
        }
    }
    tally.Print();
    EXPECT_EQ(corpus.size(), kLargestCorpus);
    EXPECT_GT(tally.fromUrl, kMutatedLines / 20);
}

} // namespace
