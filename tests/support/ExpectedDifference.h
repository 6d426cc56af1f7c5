#pragma once

#include "tests/support/RunsUnderWine.h"

#include <gtest/gtest.h>

#include <string>

/// What begins the name of a test's property that tells an expected difference.
inline constexpr const char* kDifferenceProperty = "differs-";

/// For a subject in which Wine and Windows differ: whether the test has to expect what Wine does.
/// What it expects is noted for the test's report, in the words given for either; `subject` is one
/// word, or several with dashes.
inline bool ExpectsAsUnderWine(const std::string& subject, const char* wine, const char* windows)
{
    const bool underWine = RunsUnderWine();
    testing::Test::RecordProperty(kDifferenceProperty + subject, underWine ? wine : windows);
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
