#pragma once

#include <cstdint>

/// Reads a number from the start of `text` by the C library's rules for "%i": white space is
/// skipped, then an optional sign and hexadecimal (0x…), octal (0…) or decimal digits, up to the
/// first unit that does not fit. A text that holds no number leaves `field` as it was; there is no
/// range check.
void ReadNumber(const wchar_t* text, std::int32_t& field) noexcept;
void ReadNumber(const wchar_t* text, std::int64_t& field) noexcept;
