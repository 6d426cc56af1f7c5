#pragma once

#include "tests/support/RunsUnderWine.h"

#include <iostream>
#include <string>

/// What begins a line of a test's output that tells an expected difference.
inline constexpr const char* kDifferenceMark = "EXPECTED DIFFERENCE ";

/// For a subject in which Wine and Windows differ: whether the test has to expect what Wine does.
/// What it expects is printed on a line of its own, for reports, in the words given for either;
/// `subject` is one word, or several with dashes.
inline bool ExpectsAsUnderWine(const std::string& subject, const char* wine, const char* windows)
{
    const bool underWine = RunsUnderWine();
    const std::string line = kDifferenceMark + subject + ": " + (underWine ? wine : windows);
    std::cout << line << std::endl;
    return underWine;
}

// Differences that several tests meet.

/// Whether the minimised dialog gets only what tests post to it.
inline bool MinimisedDialogGetsNoMessageByItself()
{
    return ExpectsAsUnderWine("minimised-dialog",
                              "gets the one message that ends the run from the test",
                              "the shell may post it one, which ends the run at any moment");
}

/// Whether a URL scheme has to be registered for the machine, and not for its user.
inline bool SchemesAreOfTheMachineOnly()
{
    return ExpectsAsUnderWine("url-scheme", "found among the machine's classes only",
                              "found among the user's classes");
}
