#pragma once

#include <string>
#include <vector>

/// What the platform says of this machine, as far as it decides how the tests end: lines of the
/// report, in UTF-8.
std::vector<std::string> DescribeMachine();

/// While it lives, the user's session is as the tests need it, and as it was again with its end, or
/// when the user breaks the self-test off. Nothing of it is ever written to the user's profile.
///
/// - No program that brings a window to the foreground is refused for the sake of what the user is
///   doing: the tests bring their own windows there, and the user has been asked to rest.
/// - The console has the code page that consoles begin with: batch files are read in it.
/// - Neither the machine nor its screen goes to sleep, which would lock the screen.
class TestConditions
{
public:
    TestConditions();
    ~TestConditions();
    TestConditions(const TestConditions&) = delete;
    TestConditions& operator=(const TestConditions&) = delete;

    /// The foreground lock timeout, for the report.
    std::string DescribeForeground() const;
};
