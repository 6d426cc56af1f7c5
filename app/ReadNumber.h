#pragma once

#include <cstdint>

/// Reads a number from the start of `text` by the C library's rules for "%i": white space is
/// skipped, then an optional sign and hexadecimal (0x…), octal (0…) or decimal digits, up to the
/// first unit that does not fit. A text that holds no number, such as a bare "0x", leaves `field`
/// as it was. There is no range check: a number beyond the field keeps its low bits, so that
/// 0xffffffff is the -1 that its writer means.
void ReadNumber(const wchar_t* text, std::int32_t& field) noexcept;
void ReadNumber(const wchar_t* text, std::int64_t& field) noexcept;
