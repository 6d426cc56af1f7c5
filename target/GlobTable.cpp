#include "target/GlobTable.h"

#include "target/GlobElement.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <utility>

namespace
{

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
    static constexpr std::size_t kBits = std::numeric_limits<std::uint64_t>::digits;
    std::uint64_t m_words[kGlobTableLength / kBits + 1];
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

} // namespace

// When where a set ends depends on the text, one attempt reaches stars that another does not, and
// going back to the last star only would be wrong: "abc" matches "*[a-]*b]c". Instead this tells,
// from the end of the text to its start, for every position of the pattern whether the rest of the
// one matches the rest of the other: each pair of positions is looked at once.
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
