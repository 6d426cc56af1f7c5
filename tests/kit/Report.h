#pragma once

#include "tests/kit/Suite.h"

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

/// How many tests ended in which way.
struct Totals
{
    int passed = 0;
    int failed = 0;
    int skipped = 0;

    Totals& operator+=(const Totals& other);
};

Totals TotalsOf(const SuiteResult& result);

/// "N passed, N failed, N skipped".
std::string Describe(const Totals& totals);

/// The file selftest-report.txt, written piece by piece, so that what is known is in it when the
/// self-test is broken off.
class Report
{
public:
    /// Begins the file anew in `folder`, or in the user's folder for temporary files when it cannot
    /// be written there. Throws std::runtime_error when it cannot be written at all.
    explicit Report(const std::filesystem::path& folder);

    const std::filesystem::path& Path() const { return m_path; }

    void Write(const std::vector<std::string>& lines);
    /// The suite's line, and what there is to tell of its tests.
    void WriteSuite(const Suite& suite, const SuiteResult& result, int seconds);

private:
    void WriteTests(const SuiteResult& result, Outcome outcome, const char* heading);

    std::filesystem::path m_path;
    std::ofstream m_file;
};
