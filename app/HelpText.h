#pragma once

#include <string>

/// The help text: the command line as typed, then the switches and exit codes. The URL switch is
/// left out on purpose: it is for URL-scheme handlers, not for people.
std::wstring BuildHelpText(const std::wstring& rawCommandLine);
