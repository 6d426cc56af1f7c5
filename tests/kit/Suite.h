#pragma once

#include "tests/kit/TestRecord.h"

#include <chrono>
#include <filesystem>
#include <string>
#include <vector>

/// One step of the self-test: a test program, or some of its tests.
struct Suite
{
    /// Plain ASCII.
    std::string name;
    std::wstring program;
    /// GoogleTest's filter: what comes before the dash, and what comes after it.
    std::string only = "*";
    std::string without = {};
    /// Files beside the program without which its tests would fail one by one.
    std::vector<std::wstring> needs = {};
};

struct SuiteResult
{
    std::vector<TestRecord> tests;
    /// What went wrong with the program and not with one of its tests; each counts as a failure.
    std::vector<std::string> faults;
};

/// Runs the suite to its end: a test that crashes its program, or tells nothing for as long as
/// `patience`, has failed, the program with all that it has started is ended, and the tests after
/// that one are run by another start of it. `folder` has the program and gets `NAME-output.txt` in
/// `outputFolder` with all that it prints.
SuiteResult RunSuite(const Suite& suite, const std::filesystem::path& folder,
                     const std::filesystem::path& outputFolder, std::chrono::seconds patience);
