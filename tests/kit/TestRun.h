#pragma once

#include <chrono>
#include <filesystem>
#include <string>
#include <vector>

/// A program with tests, or some of its tests.
struct TestProgram
{
    /// As in the names of CTest's tests.
    std::string level;
    std::filesystem::path file;
    /// GoogleTest's.
    std::string filter = "*";
    /// For each test.
    std::chrono::seconds limit{120};
};

/// How a test ended, the gravest first.
enum class Outcome
{
    /// It crashed, hung, or was not even started; or something is wrong with the kit itself.
    Broken,
    Failed,
    Skipped,
    Passed,
};

struct TestResult
{
    /// As CTest has it, LEVEL.SUITE.TEST; or a file's.
    std::string name;
    Outcome outcome = Outcome::Broken;
    /// What went wrong, with all that the test printed.
    std::string text = {};
    /// What others may tell as well: "SKIPPED reason", "EXPECTED DIFFERENCE …".
    std::vector<std::string> notes = {};
};

/// Runs the tests with `only` in their names, each in a process of its own, one after the other. If
/// the program cannot be started, a result in its name says so, and there are no more of its tests.
std::vector<TestResult> RunTests(const TestProgram& program, const std::string& only);
