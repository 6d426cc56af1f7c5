#pragma once

#include <cstdio>
#include <string>
#include <string_view>

/// The units as a person can read them, everything outside ASCII as <hexadecimal>.
inline std::string Readable(std::u16string_view units)
{
    std::string result;
    for (const char16_t unit : units)
    {
        if (unit >= 0x20 && unit < 0x7F)
        {
            result += static_cast<char>(unit);
        }
        else
        {
            char code[8];
            std::snprintf(code, sizeof code, "<%04X>", static_cast<unsigned>(unit));
            result += code;
        }
    }
    return result;
}
