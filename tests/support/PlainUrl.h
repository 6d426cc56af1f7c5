#pragma once

#include <cstddef>
#include <map>
#include <stdexcept>
#include <string>

// A second implementation of the URL rules, to judge the program's by: no regular expressions, each
// rule written down by itself, nothing done for speed. Which letters outside ASCII a key may hold
// is the standard library's decision and left out: here it is none.
namespace plain
{

/// A text was read beyond its end: the run ends without a result.
struct ReadBeyondEnd : std::runtime_error
{
    ReadBeyondEnd() : std::runtime_error("read beyond the end of a text") {}
};

/// `raw` is everything after the switch.
inline std::wstring CutUrl(const std::wstring& raw)
{
    if (!raw.starts_with(L'"'))
    {
        return raw.substr(0, raw.find(L' '));
    }
    std::wstring text = raw;
    bool isCut = false;
    std::size_t start = 1;
    std::size_t quote = text.find(L'"', start);
    while (quote != text.npos)
    {
        if (quote > 2 && text[quote - 1] == L'=')
        {
            const std::size_t next = text.find(L'"', quote + 1);
            start = next == text.npos ? quote + 1 : next + 1;
        }
        else
        {
            text = text.substr(1, quote - 1);
            isCut = true;
        }
        quote = text.find(L'"', start);
    }
    return isCut ? text : text.substr(1);
}

/// The position equal to the length holds a zero.
inline wchar_t UnitAt(const std::wstring& text, std::size_t position)
{
    if (position > text.size())
    {
        throw ReadBeyondEnd();
    }
    return position == text.size() ? L'\0' : text[position];
}

inline bool IsDigit(wchar_t unit)
{
    return unit >= L'0' && unit <= L'9';
}

inline bool IsLetter(wchar_t unit)
{
    return (unit >= L'A' && unit <= L'Z') || (unit >= L'a' && unit <= L'z');
}

/// -1 when it is no hexadecimal digit.
inline int HexValue(wchar_t unit)
{
    const std::size_t place = std::wstring(L"0123456789abcdef0123456789ABCDEF").find(unit);
    return place == std::wstring::npos ? -1 : static_cast<int>(place % 16);
}

/// The byte of two digits, of which both are read before one is tested; -1 when there is none.
inline int ByteAt(const std::wstring& text, std::size_t position)
{
    const int high = HexValue(UnitAt(text, position));
    const int low = HexValue(UnitAt(text, position + 1));
    return high < 0 || low < 0 ? -1 : high * 16 + low;
}

/// Control characters but the last one, and every ASCII character that is neither letter nor digit
/// nor "%".
inline bool IsRestored(int byte)
{
    const auto unit = static_cast<wchar_t>(byte);
    const bool isControl = byte < 0x20 || byte == 0x7F;
    return isControl ? byte != 0x1F
                     : byte < 0x7F && !IsLetter(unit) && !IsDigit(unit) && unit != L'%';
}

/// What a converter that replaces malformed parts makes of the first character.
inline wchar_t FirstUnitOfUtf8(int first, int second)
{
    constexpr wchar_t kReplacement = 0xFFFD;
    if (first < 0x80)
    {
        return static_cast<wchar_t>(first);
    }
    const bool isPair = first >= 0xC2 && first <= 0xDF && second >= 0x80 && second <= 0xBF;
    return isPair ? static_cast<wchar_t>((first - 0xC0) * 64 + (second - 0x80)) : kReplacement;
}

inline std::wstring Decode(std::wstring text)
{
    for (std::size_t i = 0; i < text.size(); ++i)
    {
        const int first = text[i] == L'%' ? ByteAt(text, i + 1) : -1;
        if (first < 0)
        {
            continue;
        }
        if (IsRestored(first))
        {
            text.replace(i, 3, 1, static_cast<wchar_t>(first));
            continue;
        }
        const int second = UnitAt(text, i + 3) == L'%' ? ByteAt(text, i + 4) : -1;
        if (second >= 0)
        {
            text.replace(i, 6, 1, FirstUnitOfUtf8(first, second));
        }
    }
    return text;
}

/// Everything between the first "?" that something follows and the next blank, "#" or end.
inline std::wstring QueryOf(const std::wstring& url)
{
    for (std::size_t i = 0; i + 1 < url.size(); ++i)
    {
        if (url[i] == L'?' && url[i + 1] != L' ' && url[i + 1] != L'#')
        {
            return url.substr(i + 1, url.find_first_of(L" #", i + 1) - (i + 1));
        }
    }
    return {};
}

using Parameters = std::map<std::wstring, std::wstring>;

inline void AddItem(const std::wstring& item, Parameters& parameters)
{
    const std::size_t equals = item.find(L'=');
    const std::wstring key = item.substr(0, equals);
    const std::wstring value = equals == item.npos ? L"" : item.substr(equals + 1);
    if (key.empty() || value.find_first_of(L"\n\r\u2028\u2029") != value.npos)
    {
        return;
    }
    for (const wchar_t unit : key)
    {
        if (!IsLetter(unit) && !IsDigit(unit) && unit != L'_')
        {
            return;
        }
    }
    parameters.insert({key, Decode(value)});
}

inline Parameters ParseUrl(const std::wstring& url)
{
    Parameters parameters;
    std::wstring item;
    for (const wchar_t unit : QueryOf(url) + L"&")
    {
        if (unit == L'&' || unit == L';')
        {
            AddItem(item, parameters);
            item.clear();
        }
        else
        {
            item += unit;
        }
    }
    return parameters;
}

} // namespace plain
