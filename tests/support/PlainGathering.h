#pragma once

#include "app/SendRequest.h"
#include "tests/support/PlainUrl.h"

#include <cstdint>
#include <cwctype>
#include <optional>
#include <string>

// A second implementation of the whole way from the raw command line to the request, to judge the
// program's by: no lower-cased copy, no scan function, no regular expressions.
namespace plain
{

inline wchar_t Lower(wchar_t unit)
{
    return unit >= L'A' && unit <= L'Z' ? static_cast<wchar_t>(unit - L'A' + L'a') : unit;
}

/// Everything after the first occurrence of a switch, whose text is in lower case.
inline std::optional<std::wstring> After(const std::wstring& line, const std::wstring& switchText)
{
    for (std::size_t begin = 0; begin + switchText.size() <= line.size(); ++begin)
    {
        std::size_t same = 0;
        while (same < switchText.size() && Lower(line[begin + same]) == switchText[same])
        {
            ++same;
        }
        if (same == switchText.size())
        {
            return line.substr(begin + same);
        }
    }
    return std::nullopt;
}

inline bool AsksForHelp(const std::wstring& line)
{
    return After(line, L" -?").has_value();
}

inline std::wstring TrimValue(const std::wstring& text)
{
    const bool isQuoted = text.starts_with(L'"');
    std::wstring value;
    for (std::size_t i = isQuoted ? 1 : 0; i < text.size(); ++i)
    {
        if (text[i] == (isQuoted ? L'"' : L' '))
        {
            break;
        }
        value += text[i];
    }
    return value;
}

template <typename Number>
void ReadNumber(const std::wstring& text, Number& field)
{
    std::size_t i = 0;
    // What is white space is the platform's own word, and more than ASCII has: U+2029, for one.
    while (std::iswspace(UnitAt(text, i)) != 0)
    {
        ++i;
    }
    const bool isNegative = UnitAt(text, i) == L'-';
    if (isNegative || UnitAt(text, i) == L'+')
    {
        ++i;
    }
    int base = 10;
    // A zero is a digit by itself; with an "x" after it, it is none, and digits have to follow.
    bool hasDigits = UnitAt(text, i) == L'0';
    if (hasDigits)
    {
        const bool isHexadecimal = Lower(UnitAt(text, i + 1)) == L'x';
        base = isHexadecimal ? 16 : 8;
        i += isHexadecimal ? 2 : 0;
        hasDigits = !isHexadecimal;
    }
    // Unsigned, because of what does not fit only the low bits are kept.
    std::uint64_t value = 0;
    for (; i < text.size() && HexValue(text[i]) >= 0 && HexValue(text[i]) < base; ++i)
    {
        hasDigits = true;
        value = value * static_cast<std::uint64_t>(base) +
                static_cast<std::uint64_t>(HexValue(text[i]));
    }
    if (hasDigits)
    {
        field = static_cast<Number>(isNegative ? 0 - value : value);
    }
}

/// What the switches, or the URL's parameters, give for one setting; nothing leaves the field.
using Given = std::optional<std::wstring>;

inline void SetText(const Given& given, std::wstring& field)
{
    if (given)
    {
        field = TrimValue(*given);
    }
}

template <typename Number>
void SetNumber(const Given& given, Number& field)
{
    if (given)
    {
        ReadNumber(*given, field);
    }
}

template <typename Source>
void Apply(const Source& source, SendRequest& request)
{
    request.noDialog |= source(L"nodlg", L"").has_value();
    request.activateWindow |= source(L"activatewindow", L"").has_value();
    request.globSearch |= source(L"seaglob", L"").has_value();
    SetNumber(source(L"msg", L"="), request.messageOffset);
    SetNumber(source(L"lparam", L"="), request.lParam);
    SetNumber(source(L"wparam", L"="), request.wParam);
    SetText(source(L"kla", L"="), request.windowClass);
    SetText(source(L"nam", L"="), request.windowText);
    SetText(source(L"copydata", L"="), request.copyData);
    SetText(source(L"copydataencoding", L"="), request.copyDataEncoding);
}

inline SendRequest GatherSwitches(const std::wstring& line)
{
    SendRequest request;
    Apply([&](const std::wstring& name,
              const std::wstring& end) { return After(line, L" -" + name + end); },
          request);
    return request;
}

/// The request of a line that does not ask for help. Throws ReadBeyondEnd when the run ends without
/// a result.
inline SendRequest Gather(const std::wstring& line)
{
    SendRequest request = GatherSwitches(line);
    const Given url = After(line, L" -url=");
    const Parameters parameters = url ? ParseUrl(CutUrl(*url)) : Parameters();
    Apply(
        [&](const std::wstring& key, const std::wstring&) {
            const auto found = parameters.find(key);
            return found == parameters.end() ? Given() : Given(found->second);
        },
        request);
    return request;
}

} // namespace plain
