#pragma once

#include "tests/kit/TestRun.h"

#include <string>
#include <vector>

/// "N failed, N passed, N skipped".
std::string CountOutcomes(const std::vector<TestResult>& results);

/// Whether there were tests, and nothing failed.
bool AllIsWell(const std::vector<TestResult>& results);

/// The report, in lines of UTF-8. What its reader needs first is in its first ten lines: the
/// verdict, the gravest failures, what was skipped and why, and the first of the `facts`.
std::string MakeReport(const std::string& verdict, const std::string& facts,
                       std::vector<TestResult> results);
