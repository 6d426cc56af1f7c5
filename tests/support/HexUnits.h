#pragma once

#include <cstddef>
#include <string>

/// A text that node has written as hexadecimal UTF-16 code units, four digits each (hexUnits in
/// tests/link/random_texts.js). What is no whole unit, such as the "-" that stands for an empty
/// text, gives none.
inline std::wstring TextOfHexUnits(const std::string& digits)
{
    constexpr std::size_t kDigitsPerUnit = 4;
    std::wstring text;
    for (std::size_t at = 0; at + kDigitsPerUnit <= digits.size(); at += kDigitsPerUnit)
    {
        text += static_cast<wchar_t>(std::stoul(digits.substr(at, kDigitsPerUnit), nullptr, 16));
    }
    return text;
}
