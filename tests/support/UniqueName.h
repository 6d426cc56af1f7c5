#pragma once

#include <string>
#include <string_view>

/// A name that no other window on the desktop has: `stem`, this process's id and a running number.
std::wstring UniqueName(std::wstring_view stem);
