#pragma once

#include <windows.h>

#include <string>

/// UTF-16 as UTF-8, for reports and files.
inline std::string Utf8(const std::wstring& text)
{
    std::string bytes(text.size() * 3, '\0'); // the most that a unit can take
    const int size =
        ::WideCharToMultiByte(CP_UTF8, 0, text.data(), static_cast<int>(text.size()), bytes.data(),
                              static_cast<int>(bytes.size()), nullptr, nullptr);
    bytes.resize(static_cast<std::size_t>(size));
    return bytes;
}
