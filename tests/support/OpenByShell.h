#pragma once

#include <optional>
#include <string>

/// Opens a file or link as a double click or a browser does, and waits for the end of the program
/// that the shell has started. Gives its exit code, which reaches nobody else; nothing when nothing
/// is started or it does not end.
std::optional<int> OpenByShell(const std::wstring& what);
