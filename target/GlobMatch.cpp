#include "target/GlobMatch.h"

#include "target/GlobElement.h"
#include "target/GlobTable.h"

#include <cstddef>
#include <optional>

namespace
{

/// The first place from `text` on where a segment that begins with `first` may match: the
/// end of the text when an ordinary unit does not occur any more.
const wchar_t* FirstCandidate(const wchar_t* text, wchar_t first) noexcept
{
    switch (first)
    {
    case L'*':
    case L'?':
    case L'[':
    case L'\\':
        return text;
    default:
        while (*text != first && *text != L'\0')
        {
            ++text;
        }
        return text;
    }
}

/// The first set whose end may depend on the text, which takes a range whose bound is "]"; the end
/// of the pattern when there is none. Up to there the elements stand where they stand for every
/// text.
const wchar_t* FirstVaryingSet(const wchar_t* pattern) noexcept
{
    while (*pattern != L'\0')
    {
        if (*pattern == L'\\' && pattern[1] != L'\0')
        {
            pattern += 2;
            continue;
        }
        const wchar_t* const element = pattern;
        if (*pattern++ != L'[')
        {
            continue;
        }
        for (; *pattern != L']' && *pattern != L'\0'; pattern = NextMember(pattern))
        {
            if (pattern[1] == L'-' && pattern[2] == L']')
            {
                return element;
            }
        }
    }
    return pattern;
}

/// What is left to match: the rest of the text, and the rest of the pattern after a star.
struct Rest
{
    const wchar_t* text;
    const wchar_t* pattern;
};

/// Matches segment by segment: the elements between one star and the next, each of one unit, at the
/// earliest place where they fit. Up to the first varying set that place leaves the most text to
/// the rest, and no star but the last need ever be widened. After it what follows may differ from
/// place to place: then the earliest one can still show that the texts match, but not that they do
/// not, and the result is nothing; `rest` tells up to where it is sure. Each unit of the text
/// begins at most one attempt at a segment, which reads the segment at most once.
std::optional<bool> MatchAtEarliestPlaces(Rest& rest, const wchar_t* varyingSet) noexcept
{
    auto [text, segment] = rest;
    while (*segment != L'\0')
    {
        text = FirstCandidate(text, *segment);
        const wchar_t* unit = text;
        const wchar_t* element = segment;
        while (*element != L'*' && *element != L'\0' && *unit != L'\0')
        {
            const wchar_t* const after = AfterElement(element, *unit);
            if (after == nullptr)
            {
                break;
            }
            element = after;
            ++unit;
        }

        const bool isSure = element <= varyingSet;
        if (*element == L'*')
        {
            segment = element + 1;
            text = unit;
            rest = isSure ? Rest{text, segment} : rest;
        }
        else if (*unit == L'\0')
        {
            if (*element == L'\0')
            {
                return true;
            }
            // A later attempt has even less text.
            return isSure ? std::optional(false) : std::nullopt;
        }
        else
        {
            ++text;
        }
    }
    return true;
}

} // namespace

int GlobMatch(const wchar_t* text, const wchar_t* pattern) noexcept
{
    // Up to the first star there is only one way to match.
    for (; *pattern != L'*'; ++text)
    {
        if (*text == L'\0' || *pattern == L'\0')
        {
            return *text == *pattern ? 1 : 0;
        }
        pattern = AfterElement(pattern, *text);
        if (pattern == nullptr)
        {
            return 0;
        }
    }

    Rest rest{text, pattern + 1};
    if (const auto matches = MatchAtEarliestPlaces(rest, FirstVaryingSet(rest.pattern)))
    {
        return *matches ? 1 : 0;
    }
    const auto length = static_cast<std::size_t>(EndOf(rest.pattern) - rest.pattern);
    if (length <= kGlobTableLength)
    {
        return MatchVaryingSets(rest.text, rest.pattern, length) ? 1 : 0;
    }

    // Longer than any command line: the plain rule, the star taking one unit more at each turn.
    for (; GlobMatch(rest.text, rest.pattern) == 0; ++rest.text)
    {
        if (*rest.text == L'\0')
        {
            return 0;
        }
    }
    return 1;
}
