#pragma once

#include <cstddef>

/// The longest pattern, in code units, that the table has room for: more than any command line.
inline constexpr std::size_t kGlobTableLength = 32'767;

/// Whether the text matches the pattern after a star when where a set ends may depend on the text.
/// Both are null-terminated; `length` is the pattern's, in code units, at most kGlobTableLength,
/// and the pattern has a set. Time grows with the product of both lengths, whatever they hold.
bool MatchVaryingSets(const wchar_t* text, const wchar_t* pattern, std::size_t length) noexcept;
