#pragma once

#include <algorithm>

static_assert(sizeof(wchar_t) == 2 && wchar_t(-1) > wchar_t(0), "code units are unsigned, 16 bits");

// One element of a glob pattern: a "?", a set, an escaped unit or a unit. Null-terminated UTF-16;
// nothing here reads beyond the terminator.

// Three oddities of sets are kept on purpose, because they decide which window a pattern finds:
// a range runs in either direction; its bound may be "]", which then does not close the set; but
// when that very range accepts the unit, the same "]" closes the set. So where a set ends can
// depend on the text: "[a-]b]" is followed by "b]" for the unit "a", by nothing for the unit "b".

/// Whether the member, or the range that it begins, accepts the unit. A range without a bound
/// accepts nothing but its member.
inline bool MemberAccepts(const wchar_t* member, wchar_t unit) noexcept
{
    if (*member == unit)
    {
        return true;
    }
    if (member[1] != L'-' || member[2] == L'\0')
    {
        return false;
    }
    const auto [low, high] = std::minmax(member[0], member[2]);
    return low <= unit && unit <= high;
}

/// The next member to try after one that did not accept the unit. The "-" and the bound of a range
/// are skipped, whatever the bound is; a missing bound leads to the end of the pattern.
inline const wchar_t* NextMember(const wchar_t* member) noexcept
{
    if (member[1] != L'-')
    {
        return member + 1;
    }
    return member[2] == L'\0' ? member + 2 : member + 3;
}

/// The position after a set that accepted the unit with `member`. What stands between is not read
/// as members or ranges any more. A set that is never closed reaches to the end of the pattern.
inline const wchar_t* AfterSet(const wchar_t* member) noexcept
{
    while (*member != L']' && *member != L'\0')
    {
        ++member;
    }
    return *member == L']' ? member + 1 : member;
}

/// The position after the pattern's first element when that accepts the unit, else null. The
/// element is not a star and not the end of the pattern, the unit not the end of the text.
inline const wchar_t* AfterElement(const wchar_t* element, wchar_t unit) noexcept
{
    switch (*element)
    {
    case L'?':
        return element + 1;
    case L'\\': // in front of the terminator it escapes nothing, and no unit matches
        return element[1] == unit ? element + 2 : nullptr;
    case L'[':
        for (++element; *element != L']' && *element != L'\0'; element = NextMember(element))
        {
            if (MemberAccepts(element, unit))
            {
                return AfterSet(element);
            }
        }
        return nullptr;
    default:
        return *element == unit ? element + 1 : nullptr;
    }
}

/// The terminator.
inline const wchar_t* EndOf(const wchar_t* units) noexcept
{
    while (*units != L'\0')
    {
        ++units;
    }
    return units;
}
