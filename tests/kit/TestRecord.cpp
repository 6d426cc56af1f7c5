#include "tests/kit/TestRecord.h"

#include "tests/support/Journal.h"

namespace
{

Outcome OutcomeOf(const std::string& word)
{
    return word == kJournalPassed    ? Outcome::Passed
           : word == kJournalFailed  ? Outcome::Failed
           : word == kJournalSkipped ? Outcome::Skipped
                                     : Outcome::Unfinished;
}

} // namespace

RunRecord ReadJournal(std::istream& journal)
{
    RunRecord run;
    TestRecord* test = nullptr; // the one that is open
    for (std::string line; std::getline(journal, line);)
    {
        const std::size_t blank = line.find(' ');
        const std::string mark = line.substr(0, blank);
        const std::string text = blank == line.npos ? "" : line.substr(blank + 1);
        if (mark == kJournalBegin)
        {
            test = &run.tests.emplace_back();
            test->name = text;
        }
        else if (mark == kJournalMessage)
        {
            (test == nullptr ? run.messages : test->messages).push_back(text);
        }
        else if (mark == kJournalDifference && test != nullptr)
        {
            test->differences.push_back(text);
        }
        else if (mark == kJournalEnd && test != nullptr)
        {
            test->outcome = OutcomeOf(text);
            test = nullptr;
        }
        run.done = mark == kJournalDone;
    }
    return run;
}
