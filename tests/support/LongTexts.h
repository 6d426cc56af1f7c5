#pragma once

#include <cstddef>
#include <string>
#include <string_view>

/// What the platform lets a command line hold, in code units, without its terminator.
inline constexpr std::size_t kLongestCommandLine = 32'766;

/// `part`, so many times.
template <typename Unit>
std::basic_string<Unit> Repeated(const Unit* part, std::size_t times)
{
    const std::basic_string_view<Unit> units = part;
    std::basic_string<Unit> text;
    text.reserve(units.size() * times);
    for (; times > 0; --times)
    {
        text += units;
    }
    return text;
}

/// A line of the greatest length: `first`, as many x as fit, `last`.
inline std::wstring LongestLine(const std::wstring& first, const std::wstring& last)
{
    return first + std::wstring(kLongestCommandLine - first.size() - last.size(), L'x') + last;
}
