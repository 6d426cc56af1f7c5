// How long GlobMatch takes beside the C library's fnmatch, on what a desktop has open and on
// hostile patterns. Run by scripts/bench; no test.
#include "target/GlobMatch.h"

#include <fnmatch.h>

#include <benchmark/benchmark.h>
#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

namespace
{

/// For both matchers. Only ASCII, so that a "?" means the same to both.
struct Text
{
    Text(const std::string& units) : narrow(units), wide(units.begin(), units.end()) {}

    std::string narrow;
    std::u16string wide;
};

bool Ours(const Text& text, const Text& pattern)
{
    const auto* units = reinterpret_cast<const wchar_t*>(text.wide.c_str());
    return GlobMatch(units, reinterpret_cast<const wchar_t*>(pattern.wide.c_str())) != 0;
}

bool CLibrary(const Text& text, const Text& pattern)
{
    return fnmatch(pattern.narrow.c_str(), text.narrow.c_str(), 0) == 0;
}

std::string Repeated(const char* part, int times)
{
    std::string result;
    for (; times > 0; --times)
    {
        result += part;
    }
    return result;
}

using Matcher = bool (*)(const Text& text, const Text& pattern);

/// Measures a match of each of the texts.
void Register(const std::string& name, Matcher match, const char* locale,
              const std::vector<Text>& texts, const Text& pattern)
{
    for (const Text& text : texts)
    {
        if (match(text, pattern) != Ours(text, pattern))
        {
            std::fprintf(stderr, "%s: matches other texts than GlobMatch\n", name.c_str());
            std::exit(EXIT_FAILURE);
        }
    }
    const char* const title = name.c_str(); // older releases of the library take no string
    benchmark::RegisterBenchmark(title, [=](benchmark::State& state) {
        std::setlocale(LC_ALL, locale);
        for (auto _ : state)
        {
            for (const Text& text : texts)
            {
                benchmark::DoNotOptimize(match(text, pattern));
            }
        }
    });
}

void RegisterAll(const std::string& name, const std::vector<Text>& texts, const Text& pattern)
{
    Register(name + " | GlobMatch", Ours, "C", texts, pattern);
    Register(name + " | fnmatch, C", CLibrary, "C", texts, pattern);
    // As a program has it that knows more than ASCII: fnmatch first widens both.
    Register(name + " | fnmatch, C.UTF-8", CLibrary, "C.UTF-8", texts, pattern);
}

} // namespace

int main(int argc, char** argv)
{
    // What a desktop has open: a search looks at each of these in turn.
    std::vector<Text> titles;
    for (const char* title :
         {"", "Default IME", "MSCTFIME UI", "Program Manager", "Fenster 12", "Fenster 12 von 40",
          "Unbenannt - Editor", "*notizen-2026.txt - Editor", "Task-Manager",
          "Bericht 2026-03.docx - Textverarbeitung",
          "Orvane Hauptfenster - Kunde 4711 (Musterstadt)",
          "Orvane Hauptfenster - Kunde 815 [schreibgeschuetzt]",
          "Posteingang - post@firma.example - Nachrichten",
          "Eingabeaufforderung - build.cmd release x64",
          "How to write a glob matcher - Frequently asked questions - Browser",
          R"(D:\Projekte\Weiterleitung\doc\handbuch\kapitel-03\bilder)"})
    {
        titles.emplace_back(title);
    }
    for (const char* pattern :
         {"Fenster 12", "Orvane Haupt*", "*- Editor", "*Kunde*", "Fenster [0-9]*",
          "*Kunde [0-9][0-9][0-9][0-9] *", "Bericht 20*-??.*-*", "Orvane*Kunde*[[(]*", "*e*n*r",
          "*[0-9-].txt - Editor", "*notiz[a-z_-]*"})
    {
        RegisterAll(pattern, titles, {pattern});
    }
    // As long as a text and a command line can be; none matches. The sets of the last three may end
    // in more than one place, and mean something else to fnmatch.
    const std::string text = Repeated("a", 4'095);
    RegisterAll("*a x 16000, *c", {text}, Repeated("*a", 16'000) + "*c");
    RegisterAll("*, a x 256, b", {text}, "*" + Repeated("a", 256) + "b");
    Register("*[a-] x 6553 | GlobMatch", Ours, "C", {Repeated("az", 2'047)},
             Repeated("*[a-]", 6'553));
    const std::string otherText = Repeated("b", 4'095);
    Register("*, [ x 32000, a-] | GlobMatch", Ours, "C", {otherText},
             "*" + Repeated("[", 32'000) + "a-]");
    Register("*, [a-]b] x 5460, c | GlobMatch", Ours, "C", {otherText},
             "*" + Repeated("[a-]b]", 5'460) + "c");

    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
