#pragma once

// A journal of a test program's run, line by line while it happens, so that whoever has started the
// program knows in which test it crashed or hangs. After each mark comes a blank and:
inline constexpr const char* kJournalBegin = "begin"; // the name of a test that begins
inline constexpr const char* kJournalMessage =
    "message"; // one line of a failure, or of the reason of a skip
inline constexpr const char* kJournalDifference = "difference"; // see ExpectedDifference.h
inline constexpr const char* kJournalEnd = "end"; // how the test ended: one of the next three
inline constexpr const char* kJournalPassed = "passed";
inline constexpr const char* kJournalFailed = "failed";
inline constexpr const char* kJournalSkipped = "skipped";
/// The last line of a program that came to its end; nothing follows.
inline constexpr const char* kJournalDone = "done";

/// The environment variable that names the journal's file.
inline constexpr const wchar_t* kJournalVariable = L"QUILLET_TEST_JOURNAL";

/// Has the journal written, if there is a file named for it. To be called after InitGoogleTest.
void KeepJournal();
