#pragma once

#include <istream>
#include <string>
#include <vector>

/// How a test ended; one that crashed, hangs, or was never told to have ended is unfinished.
enum class Outcome
{
    Passed,
    Failed,
    Skipped,
    Unfinished,
};

/// What a test's journal tells of one test. All texts are UTF-8.
struct TestRecord
{
    std::string name;
    Outcome outcome = Outcome::Unfinished;
    /// The lines of its failures, or the reason why it was skipped.
    std::vector<std::string> messages;
    /// What it expects here and not on every platform.
    std::vector<std::string> differences;
};

/// What one run of a test program tells.
struct RunRecord
{
    std::vector<TestRecord> tests;
    /// Failures outside any test.
    std::vector<std::string> messages;
    /// Whether the program came to its end.
    bool done = false;
};

/// Reads a journal as tests/support/Journal.h describes it, whole or cut off anywhere.
RunRecord ReadJournal(std::istream& journal);
