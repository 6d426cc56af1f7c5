#include "tests/kit/Report.h"

#include <stdexcept>

Totals& Totals::operator+=(const Totals& other)
{
    passed += other.passed;
    failed += other.failed;
    skipped += other.skipped;
    return *this;
}

Totals TotalsOf(const SuiteResult& result)
{
    Totals totals;
    totals.failed = static_cast<int>(result.faults.size());
    for (const TestRecord& test : result.tests)
    {
        const bool failed = test.outcome == Outcome::Failed || test.outcome == Outcome::Unfinished;
        totals.passed += test.outcome == Outcome::Passed ? 1 : 0;
        totals.failed += failed ? 1 : 0;
        totals.skipped += test.outcome == Outcome::Skipped ? 1 : 0;
    }
    return totals;
}

std::string Describe(const Totals& totals)
{
    return std::to_string(totals.passed) + " passed, " + std::to_string(totals.failed) +
           " failed, " + std::to_string(totals.skipped) + " skipped";
}

Report::Report(const std::filesystem::path& folder)
{
    for (const auto& place : {folder, std::filesystem::temp_directory_path()})
    {
        m_path = place / L"selftest-report.txt";
        m_file.clear();
        m_file.open(m_path);
        if (m_file.is_open())
        {
            return;
        }
    }
    throw std::runtime_error("selftest-report.txt cannot be written");
}

void Report::Write(const std::vector<std::string>& lines)
{
    for (const std::string& line : lines)
    {
        m_file << line << '\n';
    }
    m_file.flush();
}

void Report::WriteSuite(const Suite& suite, const SuiteResult& result, int seconds)
{
    Write({"", suite.name + ": " + Describe(TotalsOf(result)) + " (" + std::to_string(seconds) +
                   " s)"});
    for (const std::string& fault : result.faults)
    {
        Write({"  FAILED " + suite.name, "    " + fault});
    }
    WriteTests(result, Outcome::Failed, "  FAILED ");
    WriteTests(result, Outcome::Unfinished, "  FAILED, AND DID NOT END ");
    WriteTests(result, Outcome::Skipped, "  SKIPPED ");
    for (const TestRecord& test : result.tests)
    {
        for (const std::string& difference : test.differences)
        {
            Write({"  EXPECTED DIFFERENCE " + test.name, "    " + difference});
        }
    }
}

void Report::WriteTests(const SuiteResult& result, Outcome outcome, const char* heading)
{
    for (const TestRecord& test : result.tests)
    {
        if (test.outcome != outcome)
        {
            continue;
        }
        Write({heading + test.name});
        for (const std::string& line : test.messages)
        {
            Write({"    " + line});
        }
    }
}
