#include "examples/host/Base64Url.h"

#include "examples/host/ReceivedText.h"

#include <span>

namespace
{

constexpr std::wstring_view kDigits =
    L"ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-_";
constexpr unsigned kBitsPerDigit = 6;
constexpr unsigned kBitsPerByte = 8;

} // namespace

std::optional<std::wstring> DecodeBase64Url(std::wstring_view encoded)
{
    std::string bytes;
    unsigned bits = 0;    // the last ones are those not yet in a byte
    unsigned pending = 0; // how many
    for (const wchar_t unit : encoded)
    {
        const std::size_t digit = kDigits.find(unit);
        if (digit == kDigits.npos)
        {
            return std::nullopt;
        }
        bits = bits << kBitsPerDigit | static_cast<unsigned>(digit);
        pending += kBitsPerDigit;
        if (pending >= kBitsPerByte)
        {
            pending -= kBitsPerByte;
            bytes += static_cast<char>(bits >> pending);
            bits &= (1u << pending) - 1;
        }
    }
    // A digit that completes no byte, or bits after the last byte that are not zero.
    if (pending == kBitsPerDigit || bits != 0)
    {
        return std::nullopt;
    }
    return DecodeText(std::as_bytes(std::span(bytes)), TextEncoding::Utf8);
}
