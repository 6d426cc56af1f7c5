#include "target/GlobMatch.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <utility>

namespace
{

static_assert(sizeof(wchar_t) == 2 && wchar_t(-1) > wchar_t(0), "code units are unsigned, 16 bits");

/// The longest pattern, in code units, that the table of a pattern with varying sets has room for.
constexpr std::size_t kTableLength = 32'767;

// Three oddities of sets are kept on purpose, because they decide which window a pattern finds:
// a range runs in either direction; its bound may be "]", which then does not close the set; but
// when that very range accepts the unit, the same "]" closes the set. So where a set ends can
// depend on the text: "[a-]b]" is followed by "b]" for the unit "a", by nothing for the unit "b".

/// Whether the member, or the range that it begins, accepts the unit. A range without a bound
/// accepts nothing but its member.
bool MemberAccepts(const wchar_t* member, wchar_t unit) noexcept
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
const wchar_t* NextMember(const wchar_t* member) noexcept
{
    if (member[1] != L'-')
    {
        return member + 1;
    }
    return member[2] == L'\0' ? member + 2 : member + 3;
}

/// The position after a set that accepted the unit with `member`. What stands between is not read
/// as members or ranges any more. A set that is never closed reaches to the end of the pattern.
const wchar_t* AfterSet(const wchar_t* member) noexcept
{
    while (*member != L']' && *member != L'\0')
    {
        ++member;
    }
    return *member == L']' ? member + 1 : member;
}

/// The position after the pattern's first element when that accepts the unit, else null. The
/// element is not a star and not the end of the pattern, the unit not the end of the text.
const wchar_t* AfterElement(const wchar_t* element, wchar_t unit) noexcept
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

/// The first place from `text` on where a row of elements that begins with `first` may match: the
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
    const wchar_t* row;
};

/// Matches row by row: the elements between one star and the next, each of one unit, at the
/// earliest place where they fit. Up to the first varying set that place leaves the most text to
/// the rest, and no star but the last need ever be widened. After it what follows may differ from
/// place to place: then the earliest one can still show that the texts match, but not that they do
/// not, and the result is nothing; `rest` tells up to where it is sure. Each unit of the text
/// begins at most one attempt at a row, which reads the row at most once.
std::optional<bool> MatchAtEarliestPlaces(Rest& rest, const wchar_t* varyingSet) noexcept
{
    auto [text, row] = rest;
    while (*row != L'\0')
    {
        text = FirstCandidate(text, *row);
        const wchar_t* unit = text;
        const wchar_t* element = row;
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
            row = element + 1;
            text = unit;
            rest = isSure ? Rest{text, row} : rest;
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

const wchar_t* EndOf(const wchar_t* units) noexcept
{
    while (*units != L'\0')
    {
        ++units;
    }
    return units;
}

/// For one position in the text: from which positions of the pattern on the rests match. At first
/// from none. Only the words that the pattern needs are ever touched, or clearing them would take
/// longer than a usual title.
class Row
{
public:
    explicit Row(std::size_t length) noexcept
    {
        std::fill_n(m_words, length / kBits + 1, std::uint64_t{0});
    }

    bool operator[](std::size_t at) const noexcept
    {
        return (m_words[at / kBits] >> at % kBits & 1) != 0;
    }
    void Set(std::size_t at, bool matches) noexcept
    {
        const std::uint64_t bit = std::uint64_t{1} << at % kBits;
        std::uint64_t& word = m_words[at / kBits];
        word = matches ? word | bit : word & ~bit;
    }

private:
    static constexpr std::size_t kBits = 64;
    std::uint64_t m_words[kTableLength / kBits + 1];
};

/// Fills the row of the position in the text that `unit` stands at, from the row of the next one.
/// A cell needs only cells close to its right and cells of the next row. This is so for sets too:
/// what trying the members from a position on leads to follows from the member there and from the
/// next one. So no set is walked more than once, however many sets begin inside each other.
void FillRow(Row& here, const Row& next, const wchar_t* pattern, std::size_t length,
             wchar_t unit) noexcept
{
    // What trying members from a position on leads to, at the position modulo 4: the next member
    // is at most three units away.
    bool members[4] = {};
    std::size_t afterSet = length;
    here.Set(length, false);
    for (std::size_t at = length; at-- > 0;)
    {
        const wchar_t* const element = pattern + at;
        switch (*element)
        {
        case L'*':
            here.Set(at, here[at + 1] || next[at]);
            break;
        case L'[':
            here.Set(at, members[(at + 1) % 4]);
            break;
        default:
            const wchar_t* const after = AfterElement(element, unit);
            here.Set(at, after != nullptr && next[static_cast<std::size_t>(after - pattern)]);
        }

        if (*element == L']')
        {
            afterSet = at + 1;
            members[at % 4] = false;
        }
        else if (MemberAccepts(element, unit))
        {
            members[at % 4] = next[afterSet];
        }
        else
        {
            members[at % 4] = members[static_cast<std::size_t>(NextMember(element) - pattern) % 4];
        }
    }
}

/// Matches the pattern after a star when where a set ends may depend on the text. Then one attempt
/// reaches stars that another does not, and going back to the last star only would be wrong: "abc"
/// matches "*[a-]*b]c". Instead this tells, from the end of the text to its start, for every
/// position of the pattern whether the rest of the one matches the rest of the other: each pair of
/// positions is looked at once.
bool MatchVaryingSets(const wchar_t* text, const wchar_t* pattern, std::size_t length) noexcept
{
    Row rows[] = {Row(length), Row(length)};
    Row* here = &rows[0];
    Row* next = &rows[1];

    // At the end of the text the end of the pattern matches, and the stars right before it. Not all
    // of the pattern is stars: it has a set.
    std::size_t at = length;
    here->Set(at, true);
    while (pattern[at - 1] == L'*')
    {
        here->Set(--at, true);
    }

    // The star before the pattern may end anywhere.
    const wchar_t* position = EndOf(text);
    while (!(*here)[0])
    {
        if (position == text)
        {
            return false;
        }
        std::swap(here, next);
        FillRow(*here, *next, pattern, length, *--position);
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
    if (const auto matches = MatchAtEarliestPlaces(rest, FirstVaryingSet(rest.row)))
    {
        return *matches ? 1 : 0;
    }
    const auto length = static_cast<std::size_t>(EndOf(rest.row) - rest.row);
    if (length <= kTableLength)
    {
        return MatchVaryingSets(rest.text, rest.row, length) ? 1 : 0;
    }

    // Longer than any command line: the plain rule, the star taking one unit more at each turn.
    for (; GlobMatch(rest.text, rest.row) == 0; ++rest.text)
    {
        if (*rest.text == L'\0')
        {
            return 0;
        }
    }
    return 1;
}
