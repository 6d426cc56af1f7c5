#pragma once

/// Says whether the whole of `text` matches the glob `pattern`: 1 when it does, 0 when not.
///
///   *      any run of code units, the empty one included
///   ?      exactly one code unit
///   [...]  one code unit out of the set's members and ranges; no negation, no escape inside
///   \x     the code unit x itself
///
/// Both are null-terminated UTF-16 strings, not null, and are compared code unit by code unit as
/// unsigned numbers: no case folding, no locale, and a surrogate pair is two units.
///
/// Takes no memory but a bounded piece of stack, keeps no state, and reads nothing past either
/// terminator. The time is at most about text length x pattern length for every pattern of up to
/// 32,767 units, which is more than a command line can hold; a longer one gives the same results
/// without that promise.
int GlobMatch(const wchar_t* text, const wchar_t* pattern) noexcept;
