#pragma once

#include <windows.h>

#include <string>
#include <string_view>

/// UTF-16 as UTF-8.
inline std::string Utf8(std::wstring_view text)
{
    const int units = static_cast<int>(text.size());
    const int bytes =
        ::WideCharToMultiByte(CP_UTF8, 0, text.data(), units, nullptr, 0, nullptr, nullptr);
    std::string result(static_cast<std::size_t>(bytes), '\0');
    ::WideCharToMultiByte(CP_UTF8, 0, text.data(), units, result.data(), bytes, nullptr, nullptr);
    return result;
}
