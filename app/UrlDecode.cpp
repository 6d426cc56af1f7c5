// Percent-decoding, selective on purpose: it restores control characters, the characters of the two
// tables below, and two other escapes in a row as a two-byte UTF-8 sequence. A single one stays as
// it was written, %41 and %25 among them, and a "+" never becomes a blank. Links in use rely on
// every one of these rules, so they are kept as they stand.
#include "app/QuilletApp.h"

#include <iterator>
#include <optional>
#include <string_view>

namespace
{

constexpr std::wstring_view UnsafeUrlChars = L" \"<>#{}|\\^~[]`";
constexpr std::wstring_view ReservedUrlChars = L"$&+,./:;=?@-_!*()'";

constexpr int kEscapeLength = 3;

struct RestoredEscape
{
    wchar_t unit;
    /// How many units of the text it stands for.
    int length;
};

std::optional<unsigned> HexDigit(wchar_t unit)
{
    if (unit >= L'0' && unit <= L'9')
    {
        return unit - L'0';
    }
    if (unit >= L'A' && unit <= L'F')
    {
        return unit - L'A' + 10u;
    }
    if (unit >= L'a' && unit <= L'f')
    {
        return unit - L'a' + 10u;
    }
    return std::nullopt;
}

/// The byte of the escape whose "%" stands at `percent`. Both digits are read before either is
/// tested, so that a text ending in "%" is read past its end, where the string throws. Kept on
/// purpose, too.
std::optional<unsigned> EscapedByte(const CString& text, int percent)
{
    const auto high = HexDigit(text.GetAt(percent + 1));
    const auto low = HexDigit(text.GetAt(percent + 2));
    if (!high || !low)
    {
        return std::nullopt;
    }
    return *high << 4 | *low;
}

/// 0x1F is a control character too, but the boundary leaves it out; kept.
bool IsRestored(unsigned byte)
{
    return byte < 0x1F || byte == 0x7F ||
           UnsafeUrlChars.find(static_cast<wchar_t>(byte)) != std::wstring_view::npos ||
           ReservedUrlChars.find(static_cast<wchar_t>(byte)) != std::wstring_view::npos;
}

RestoredEscape RestoreEscape(const CString& text, int percent)
{
    constexpr RestoredEscape kLeftAsWritten{L'%', 1};

    const auto first = EscapedByte(text, percent);
    if (!first)
    {
        return kLeftAsWritten;
    }
    if (IsRestored(*first))
    {
        return {static_cast<wchar_t>(*first), kEscapeLength};
    }
    const int nextPercent = percent + kEscapeLength;
    const auto second =
        text.GetAt(nextPercent) == L'%' ? EscapedByte(text, nextPercent) : std::nullopt;
    if (!second)
    {
        return kLeftAsWritten;
    }
    const auto bytes = static_cast<std::uint16_t>(*first << 8 | *second);
    return {CQuilletApp::DecodeUtf8Pair(bytes), 2 * kEscapeLength};
}

} // namespace

CString CQuilletApp::UrlDecode(CString text)
{
    CString decoded;
    int done = 0;
    for (int percent = text.Find(L'%'); percent >= 0; percent = text.Find(L'%', done))
    {
        decoded.Append(text.GetString() + done, percent - done);
        const RestoredEscape restored = RestoreEscape(text, percent);
        decoded += restored.unit;
        done = percent + restored.length;
    }
    decoded.Append(text.GetString() + done, text.GetLength() - done);
    return decoded;
}

wchar_t CQuilletApp::DecodeUtf8Pair(std::uint16_t bytes)
{
    const char utf8[] = {static_cast<char>(bytes >> 8), static_cast<char>(bytes & 0xFF), '\0'};
    wchar_t units[2] = {};
    // Bytes that are no UTF-8 pair can give more units than there is room for, which is reported as
    // a failure; the first unit counts all the same.
    ::MultiByteToWideChar(CP_UTF8, 0, utf8, sizeof(utf8), units,
                          static_cast<int>(std::size(units)));
    return units[0];
}
