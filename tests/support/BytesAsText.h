#pragma once

#include <cstddef>
#include <span>
#include <string>

/// Bytes as two-digit hexadecimal numbers with blanks between them, for failures to show.
inline std::string BytesAsText(std::span<const std::byte> bytes)
{
    constexpr char kDigits[] = "0123456789ABCDEF";
    std::string text;
    for (const std::byte each : bytes)
    {
        const auto value = std::to_integer<unsigned>(each);
        text += text.empty() ? "" : " ";
        text += kDigits[value / 16];
        text += kDigits[value % 16];
    }
    return text;
}
