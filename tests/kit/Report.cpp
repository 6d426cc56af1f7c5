#include "tests/kit/Report.h"

#include <algorithm>
#include <map>
#include <regex>
#include <set>
#include <sstream>

namespace
{

bool HasFailed(const TestResult& result)
{
    return result.outcome <= Outcome::Failed;
}

auto CountOf(const std::vector<TestResult>& results, Outcome outcome)
{
    return std::ranges::count(results, outcome, &TestResult::outcome);
}

} // namespace

std::string CountOutcomes(const std::vector<TestResult>& results)
{
    std::ostringstream text;
    text << std::ranges::count_if(results, HasFailed) << " failed, "
         << CountOf(results, Outcome::Passed) << " passed, " << CountOf(results, Outcome::Skipped)
         << " skipped";
    return text.str();
}

bool AllIsWell(const std::vector<TestResult>& results)
{
    return std::ranges::none_of(results, HasFailed) && CountOf(results, Outcome::Passed) > 0;
}

std::string MakeReport(const std::string& verdict, const std::string& facts,
                       std::vector<TestResult> results)
{
    std::ranges::stable_sort(results, {}, &TestResult::outcome);
    std::string head = verdict + "\n";
    std::string failures;
    std::map<std::string, std::set<std::string>> testsOf; // each note
    int shown = 0;
    for (const TestResult& result : results)
    {
        if (HasFailed(result))
        {
            // The beginning, as one line; and all of it, indented.
            const std::string line =
                std::regex_replace(result.text.substr(0, 160), std::regex("\\s+"), " ");
            head += ++shown > 3 ? "" : "Failed: " + result.name + ": " + line + "\n";
            failures += "\nFAILED " + result.name + "\n    " +
                        std::regex_replace(result.text, std::regex("\n(.)"), "\n    $1") + "\n";
        }
        for (const std::string& note : result.notes)
        {
            testsOf[note].insert(result.name);
        }
    }
    std::string skips;
    std::string notes;
    for (const auto& [note, tests] : testsOf)
    {
        if (note.starts_with("SKIPPED "))
        {
            skips += (skips.empty() ? "Skipped: " : ", ") + std::to_string(tests.size()) + " (" +
                     note.substr(note.find(' ') + 1) + ")";
        }
        notes += "\n" + note + "\n";
        for (const std::string& test : tests)
        {
            notes += "    " + test + "\n";
        }
    }
    return head + skips + (skips.empty() ? "" : "\n") + facts + failures + notes;
}
