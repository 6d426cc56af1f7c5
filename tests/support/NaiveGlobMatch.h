#pragma once

#include <optional>
#include <string_view>

// A second implementation of the glob rules, to judge `GlobMatch` by: each rule written down by
// itself on shrinking views, nothing done for speed. Its time grows exponentially with the stars,
// so it is for short inputs only.
namespace naive
{

/// Not of `wchar_t`: where that is narrower than the C library believes, its views cannot be used.
using Units = std::u16string_view;

/// What of the pattern follows an element that accepted its unit; nothing when it did not.
using Rest = std::optional<Units>;

/// A set that is not closed reaches to the end of the pattern.
inline Units RestAfterSet(Units set)
{
    while (!set.empty())
    {
        const bool closes = set.front() == u']';
        set.remove_prefix(1);
        if (closes)
        {
            break;
        }
    }
    return set;
}

inline Rest MatchMembers(Units members, char16_t unit)
{
    if (members.empty() || members[0] == u']')
    {
        return std::nullopt;
    }
    if (members[0] == unit)
    {
        return RestAfterSet(members);
    }
    const bool isRange = members.size() >= 2 && members[1] == u'-';
    if (!isRange)
    {
        return MatchMembers(members.substr(1), unit);
    }
    if (members.size() == 2)
    {
        return std::nullopt;
    }
    const char16_t bound = members[2];
    const bool upwards = members[0] <= unit && unit <= bound;
    const bool downwards = bound <= unit && unit <= members[0];
    if (upwards || downwards)
    {
        return RestAfterSet(members);
    }
    return MatchMembers(members.substr(3), unit);
}

inline Rest MatchElement(Units pattern, char16_t unit)
{
    if (pattern[0] == u'?')
    {
        return pattern.substr(1);
    }
    if (pattern[0] == u'[')
    {
        return MatchMembers(pattern.substr(1), unit);
    }
    if (pattern[0] == u'\\')
    {
        pattern.remove_prefix(1);
    }
    if (pattern.empty() || pattern[0] != unit)
    {
        return std::nullopt;
    }
    return pattern.substr(1);
}

inline bool GlobMatch(Units text, Units pattern)
{
    if (pattern.empty())
    {
        return text.empty();
    }
    if (pattern[0] == u'*')
    {
        return GlobMatch(text, pattern.substr(1)) ||
               (!text.empty() && GlobMatch(text.substr(1), pattern));
    }
    if (text.empty())
    {
        return false;
    }
    const Rest rest = MatchElement(pattern, text[0]);
    return rest && GlobMatch(text.substr(1), *rest);
}

} // namespace naive
