#pragma once

#include <windows.h>

#include <cstddef>
#include <string>
#include <string_view>

/// The text's bytes in a code page; what it lacks becomes its default character.
inline std::string InCodePage(UINT codePage, std::wstring_view text)
{
    const int units = static_cast<int>(text.size());
    const int size =
        ::WideCharToMultiByte(codePage, 0, text.data(), units, nullptr, 0, nullptr, nullptr);
    std::string bytes(static_cast<std::size_t>(size), '\0');
    ::WideCharToMultiByte(codePage, 0, text.data(), units, bytes.data(), size, nullptr, nullptr);
    return bytes;
}

/// The text that these bytes of a code page are.
inline std::wstring FromCodePage(UINT codePage, std::string_view bytes)
{
    const int size = static_cast<int>(bytes.size());
    const int units = ::MultiByteToWideChar(codePage, 0, bytes.data(), size, nullptr, 0);
    std::wstring text(static_cast<std::size_t>(units), L'\0');
    ::MultiByteToWideChar(codePage, 0, bytes.data(), size, text.data(), units);
    return text;
}
