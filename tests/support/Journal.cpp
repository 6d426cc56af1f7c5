#include "tests/support/Journal.h"

#include "tests/support/ExpectedDifference.h"

#include <gtest/gtest.h>

#include <array>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <string_view>

namespace
{

class JournalWriter : public testing::EmptyTestEventListener
{
public:
    explicit JournalWriter(std::filesystem::path path) : m_path(std::move(path)) {}

private:
    // The first event, and none of the processes that try what ends a process: those keep no
    // journal.
    void OnTestProgramStart(const testing::UnitTest&) override { m_file.open(m_path); }

    void OnTestStart(const testing::TestInfo& test) override
    {
        Write(kJournalBegin, std::string(test.test_suite_name()) + "." + test.name());
    }

    void OnTestPartResult(const testing::TestPartResult& result) override
    {
        if (result.passed())
        {
            return;
        }
        const std::string place = result.file_name() == nullptr
                                      ? ""
                                      : std::string(result.file_name()) + ":" +
                                            std::to_string(result.line_number()) + ": ";
        std::istringstream lines(place + result.message());
        for (std::string line; std::getline(lines, line);)
        {
            Write(kJournalMessage, line);
        }
    }

    void OnTestEnd(const testing::TestInfo& test) override
    {
        const testing::TestResult& result = *test.result();
        for (int i = 0; i < result.test_property_count(); ++i)
        {
            const testing::TestProperty& property = result.GetTestProperty(i);
            const std::string_view name = property.key();
            const std::string_view mark = kDifferenceProperty;
            if (name.starts_with(mark))
            {
                Write(kJournalDifference,
                      std::string(name.substr(mark.size())) + ": " + property.value());
            }
        }
        Write(kJournalEnd, result.Failed()    ? kJournalFailed
                           : result.Skipped() ? kJournalSkipped
                                              : kJournalPassed);
    }

    void OnTestProgramEnd(const testing::UnitTest&) override { Write(kJournalDone, ""); }

    // Each line at once: the next may never come.
    void Write(const char* mark, const std::string& text)
    {
        m_file << mark << ' ' << text << std::endl;
    }

    std::filesystem::path m_path;
    std::ofstream m_file;
};

} // namespace

void KeepJournal()
{
    std::array<wchar_t, MAX_PATH> path{};
    if (::GetEnvironmentVariableW(kJournalVariable, path.data(), MAX_PATH) != 0)
    {
        testing::UnitTest::GetInstance()->listeners().Append(new JournalWriter(path.data()));
    }
}
