// Lets a coverage-guided fuzzer look for a text and a pattern on which GlobMatch and the naive
// rules differ, or on which GlobMatch touches memory it must not.

#include "target/GlobMatch.h"
#include "tests/support/NaiveGlobMatch.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <string_view>

namespace
{

/// Whether the naive rules, which widen each star for each way to widen those before, are done with
/// it at once. What they do not judge only has to end well.
bool CanBeJudged(const std::u16string& text, const std::u16string& pattern)
{
    return text.size() <= 10 && std::count(pattern.begin(), pattern.end(), u'*') <= 6;
}

/// One byte gives one unit. Bytes from 0x80 on stand for units that a signed comparison would take
/// for negative and a narrower one for ASCII.
char16_t Unit(std::uint8_t byte)
{
    return byte < 0x80 ? byte : static_cast<char16_t>(0xFF00 | (byte & 0x7F));
}

/// A copy on the heap of exactly the units and the terminator, whose surroundings the sanitizer
/// watches.
std::unique_ptr<wchar_t[]> Copy(const std::u16string& units)
{
    auto copy = std::make_unique<wchar_t[]>(units.size() + 1);
    std::copy(units.begin(), units.end(), copy.get());
    return copy;
}

} // namespace

/// The input is the text, a zero byte, and the pattern up to the end or the next zero byte.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    std::u16string parts[2];
    std::size_t part = 0;
    for (std::size_t i = 0; i < size && part < 2; ++i)
    {
        if (data[i] == 0)
        {
            ++part;
        }
        else
        {
            parts[part] += Unit(data[i]);
        }
    }

    const auto& [text, pattern] = parts;
    const int result = GlobMatch(Copy(text).get(), Copy(pattern).get());
    if (CanBeJudged(text, pattern) && result != (naive::GlobMatch(text, pattern) ? 1 : 0))
    {
        std::fprintf(stderr, "GlobMatch gives %d, against the naive rules\n", result);
        std::abort();
    }
    return 0;
}
