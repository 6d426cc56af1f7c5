#include "examples/host/ReceivedText.h"

#include <windows.h>

#include <cstring>
#include <limits>

namespace
{

std::optional<std::wstring> DecodeUtf16(std::span<const std::byte> bytes)
{
    if (bytes.size() % sizeof(wchar_t) != 0)
    {
        return std::nullopt;
    }
    // Copied, not cast: the bytes of another process need not be aligned for code units.
    std::wstring text(bytes.size() / sizeof(wchar_t), L'\0');
    std::memcpy(text.data(), bytes.data(), bytes.size());
    return text;
}

std::optional<std::wstring> DecodeNarrow(std::span<const std::byte> bytes, UINT codePage)
{
    if (bytes.empty())
    {
        return std::wstring(); // the conversion below takes a length of 0 for an error
    }
    if (bytes.size() > static_cast<std::size_t>(std::numeric_limits<int>::max()))
    {
        return std::nullopt;
    }
    const auto* narrow = reinterpret_cast<const char*>(bytes.data());
    const int size = static_cast<int>(bytes.size());
    const int length =
        MultiByteToWideChar(codePage, MB_ERR_INVALID_CHARS, narrow, size, nullptr, 0);
    if (length == 0)
    {
        return std::nullopt;
    }
    std::wstring text(static_cast<std::size_t>(length), L'\0');
    MultiByteToWideChar(codePage, MB_ERR_INVALID_CHARS, narrow, size, text.data(), length);
    return text;
}

} // namespace

const wchar_t* NameOf(TextEncoding encoding)
{
    switch (encoding)
    {
    case TextEncoding::Utf8:
        return L"UTF-8";
    case TextEncoding::Ansi:
        return L"ANSI";
    default:
        return L"UTF-16";
    }
}

std::optional<std::wstring> DecodeText(std::span<const std::byte> bytes, TextEncoding encoding)
{
    switch (encoding)
    {
    case TextEncoding::Utf8:
        return DecodeNarrow(bytes, CP_UTF8);
    case TextEncoding::Ansi:
        return DecodeNarrow(bytes, CP_ACP);
    default:
        return DecodeUtf16(bytes);
    }
}
