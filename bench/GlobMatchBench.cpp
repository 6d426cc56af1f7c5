// Compares GlobMatch with the C library's fnmatch and with the naive rules, in turn in one run, and
// shows how its time grows on hostile patterns. Run by scripts/bench; no test.

#include "target/GlobMatch.h"
#include "tests/support/NaiveGlobMatch.h"

#include <fnmatch.h>

#include <algorithm>
#include <benchmark/benchmark.h>
#include <clocale>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace
{

/// A pattern or text for the contenders of both kinds. Only ASCII, so that fnmatch is spared
/// multibyte characters and a "?" means the same to everyone.
class Ascii
{
public:
    Ascii(std::string units) : m_narrow(std::move(units)), m_wide(m_narrow.begin(), m_narrow.end())
    {
    }
    Ascii(const char* units) : Ascii(std::string(units)) {}

    const char* Narrow() const { return m_narrow.c_str(); }
    const wchar_t* Wide() const { return reinterpret_cast<const wchar_t*>(m_wide.c_str()); }
    std::u16string_view View() const { return m_wide; }

private:
    std::string m_narrow;
    std::u16string m_wide;
};

using Matcher = bool (*)(const Ascii& text, const Ascii& pattern);

bool Ours(const Ascii& text, const Ascii& pattern)
{
    return GlobMatch(text.Wide(), pattern.Wide()) != 0;
}

bool CLibrary(const Ascii& text, const Ascii& pattern)
{
    return fnmatch(pattern.Narrow(), text.Narrow(), 0) == 0;
}

bool Naive(const Ascii& text, const Ascii& pattern)
{
    return naive::GlobMatch(text.View(), pattern.View());
}

struct Contender
{
    const char* name;
    Matcher match;
    const char* locale;
};

constexpr Contender kOurs{"GlobMatch", Ours, "C"};
constexpr Contender kCLibrary{"fnmatch, C", CLibrary, "C"};
/// With a multibyte locale, as a program has that knows more than ASCII, fnmatch first widens both.
constexpr Contender kWideCLibrary{"fnmatch, C.UTF-8", CLibrary, "C.UTF-8"};
constexpr Contender kNaive{"naive", Naive, "C"};
constexpr Contender kOthers[] = {kCLibrary, kWideCLibrary, kNaive};

/// What a desktop has open: the search looks at each of these in turn.
const std::vector<Ascii> kTitles = {
    "",
    "Default IME",
    "MSCTFIME UI",
    "Program Manager",
    "Fenster 12",
    "Fenster 12 von 40",
    "Unbenannt - Editor",
    "*notizen-2026.txt - Editor",
    "Bericht 2026-03.docx - Textverarbeitung",
    "Orvane Hauptfenster - Kunde 4711 (Musterstadt)",
    "Orvane Hauptfenster - Kunde 815 [schreibgeschuetzt]",
    "Posteingang - post@firma.example - Nachrichten",
    "Eingabeaufforderung - build.cmd release x64",
    "How to write a glob matcher - Frequently asked questions - Browser",
    R"(D:\Projekte\Weiterleitung\doc\handbuch\kapitel-03\bilder)",
    "Task-Manager",
};

/// The end of the last one's set varies.
const char* const kTypicalPatterns[] = {
    "Fenster 12",
    "Orvane Haupt*",
    "*- Editor",
    "*Kunde*",
    "Fenster [0-9]*",
    "*Kunde [0-9][0-9][0-9][0-9] *",
    "Bericht 20*-??.*-*",
    "Orvane*Kunde*[[(]*",
    "*e*n*r",
    "*[0-9-].txt - Editor",
    "*notiz[a-z_-]*",
};

std::string Repeated(const std::string& part, std::size_t times)
{
    std::string result;
    for (std::size_t i = 0; i < times; ++i)
    {
        result += part;
    }
    return result;
}

struct HostilePair
{
    const char* name;
    std::string textPart;
    std::string pattern;
    /// Whether the pattern means the same to fnmatch.
    bool common;
};

constexpr std::size_t kCommandLine = 32'766;

/// The text is `textPart` repeated up to the length in question. None of these matches.
const HostilePair kHostilePairs[] = {
    {"`*a` x 8, `*c`", "a", Repeated("*a", 8) + "*c", true},
    {"`*a` x 16,000, `*c`", "a", Repeated("*a", 16'000) + "*c", true},
    {"`*` x 32,000, `b`", "a", Repeated("*", 32'000) + "b", true},
    {"`*`, `a` x 256, `b`", "a", "*" + Repeated("a", 256) + "b", true},
    {"`*`, `[b-za]` x 256, `b`", "a", "*" + Repeated("[b-za]", 256) + "b", true},
    {"`*[a-]` x 6,553", "az", Repeated("*[a-]", kCommandLine / 5), false},
    {"`*[a-]*b]` x 4,095, `c`", "ab", Repeated("*[a-]*b]", kCommandLine / 8) + "c", false},
    {"`*`, `[` x 32,000, `a-]`", "b", "*" + Repeated("[", 32'000) + "a-]", false},
    {"`*`, `[a-]b]` x 5,460, `c`", "b", "*" + Repeated("[a-]b]", kCommandLine / 6) + "c", false},
};
constexpr std::size_t kTextLengths[] = {512, 1'024, 2'048, 4'095};
constexpr std::size_t kLongestText = 4'095;

/// The naive rules need exponential time, so they meet hostile patterns on a short text only.
constexpr std::size_t kShortText = 24;
const char* const kShortHostilePatterns[] = {"*a*a*a*a*c", "*a*a*a*a*a*a*a*a*c",
                                             "*[a-]*b]*[a-]*b]c"};

/// The median of each benchmark's repetitions, by the benchmark's name, in nanoseconds.
class Medians : public benchmark::ConsoleReporter
{
public:
    void ReportRuns(const std::vector<Run>& reports) override
    {
        for (const Run& run : reports)
        {
            if (run.aggregate_name == "median")
            {
                m_values[run.run_name.function_name] = run.GetAdjustedCPUTime();
            }
        }
    }

    double operator[](const std::string& name) const
    {
        const auto found = m_values.find(name);
        return found == m_values.end() ? 0 : found->second;
    }

private:
    std::map<std::string, double> m_values;
};

std::string Name(const std::string& subject, const char* contender)
{
    return subject + " | " + contender;
}

/// Measures one match of each of the texts, which live as long as the program.
void Register(const std::string& subject, const Contender& contender,
              const std::vector<Ascii>& texts, const Ascii& pattern)
{
    const auto run = [contender, texts, pattern](benchmark::State& state) {
        std::setlocale(LC_ALL, contender.locale);
        for (auto _ : state)
        {
            for (const Ascii& text : texts)
            {
                benchmark::DoNotOptimize(contender.match(text, pattern));
            }
        }
    };
    // Older releases of the library take a null-terminated text, newer ones a string.
    const std::string name = Name(subject, contender.name);
    const char* const title = name.c_str();
    benchmark::RegisterBenchmark(title, run)->Unit(benchmark::kNanosecond);
}

/// A comparison is fair only when all find the same windows.
void RequireSameResults(const std::vector<Ascii>& texts, const Ascii& pattern)
{
    for (const Ascii& text : texts)
    {
        const bool expected = Naive(text, pattern);
        if (Ours(text, pattern) != expected || CLibrary(text, pattern) != expected)
        {
            std::fprintf(stderr, "Different results: %s, %s\n", text.Narrow(), pattern.Narrow());
            std::exit(EXIT_FAILURE);
        }
    }
}

std::string Growing(const HostilePair& pair, std::size_t length)
{
    return std::string(pair.name) + " @ " + std::to_string(length);
}

void RegisterAll()
{
    for (const char* pattern : kTypicalPatterns)
    {
        RequireSameResults(kTitles, pattern);
        Register(pattern, kOurs, kTitles, pattern);
        for (const Contender& other : kOthers)
        {
            Register(pattern, other, kTitles, pattern);
        }
    }
    for (const char* pattern : kShortHostilePatterns)
    {
        const std::vector<Ascii> texts = {Repeated("ab", kShortText / 2),
                                          Repeated("a", kShortText)};
        Register(pattern, kOurs, texts, pattern);
        Register(pattern, kNaive, texts, pattern);
    }
    for (const HostilePair& pair : kHostilePairs)
    {
        for (const std::size_t length : kTextLengths)
        {
            const std::vector<Ascii> texts = {
                Repeated(pair.textPart, length / pair.textPart.size())};
            Register(Growing(pair, length), kOurs, texts, pair.pattern);
            if (pair.common && length == kLongestText)
            {
                Register(Growing(pair, length), kCLibrary, texts, pair.pattern);
            }
        }
    }
}

void PrintTypical(const Medians& medians)
{
    std::printf("\nTypical patterns on %zu titles, nanoseconds for one title; how many times as "
                "long the others take\n\n",
                kTitles.size());
    std::printf("| pattern | GlobMatch |");
    for (const Contender& other : kOthers)
    {
        std::printf(" %s |", other.name);
    }
    std::printf("\n|---|---:|---:|---:|---:|\n");
    for (const char* pattern : kTypicalPatterns)
    {
        const double ours = medians[Name(pattern, kOurs.name)];
        std::printf("| `%s` | %.1f |", pattern, ours / static_cast<double>(kTitles.size()));
        for (const Contender& other : kOthers)
        {
            std::printf(" x %.2f |", medians[Name(pattern, other.name)] / ours);
        }
        std::printf("\n");
    }
}

void PrintShortHostile(const Medians& medians)
{
    std::printf(
        "\nHostile patterns on `abab...` and on `aaaa...` of %zu units, nanoseconds for both\n\n"
        "| pattern | GlobMatch | naive |\n|---|---:|---:|\n",
        kShortText);
    for (const char* pattern : kShortHostilePatterns)
    {
        const double ours = medians[Name(pattern, kOurs.name)];
        const double naive = medians[Name(pattern, kNaive.name)];
        std::printf("| `%s` | %.0f | %.0f (x %.0f) |\n", pattern, ours, naive, naive / ours);
    }
}

void PrintGrowth(const Medians& medians)
{
    std::printf("\nHostile patterns on longer and longer texts, milliseconds\n\n| pattern |");
    for (const std::size_t length : kTextLengths)
    {
        std::printf(" %zu units |", length);
    }
    std::printf(" ns / (text x pattern) | fnmatch, C |\n|---|---:|---:|---:|---:|---:|---:|\n");
    for (const HostilePair& pair : kHostilePairs)
    {
        std::printf("| %s |", pair.name);
        for (const std::size_t length : kTextLengths)
        {
            std::printf(" %.3f |", medians[Name(Growing(pair, length), kOurs.name)] / 1e6);
        }
        const std::string longest = Growing(pair, kLongestText);
        const double ours = medians[Name(longest, kOurs.name)];
        std::printf(" %.3f |", ours / static_cast<double>(kLongestText * pair.pattern.size()));
        if (pair.common)
        {
            const double theirs = medians[Name(longest, kCLibrary.name)];
            std::printf(" %.3f (x %.1f) |\n", theirs / 1e6, theirs / ours);
        }
        else
        {
            std::printf(" other rules |\n");
        }
    }
}

} // namespace

int main(int argc, char** argv)
{
    benchmark::Initialize(&argc, argv);
    RegisterAll();
    Medians medians;
    benchmark::RunSpecifiedBenchmarks(&medians);
    PrintTypical(medians);
    PrintShortHostile(medians);
    PrintGrowth(medians);
}
