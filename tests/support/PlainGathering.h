#pragma once

#include "app/SendRequest.h"
#include "tests/support/PlainUrl.h"

#include <cstdint>
#include <limits>
#include <optional>
#include <string>

// A second implementation of the whole way from the raw command line to the request, to judge the
// program's by: no lower-cased copy, no scan function, no regular expressions.
namespace plain
{

struct Gathered
{
    SendRequest request;
    /// False when a number was larger than its field: which value that gives is nobody's promise.
    bool numbersFit = true;
};

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
void ReadNumber(const std::wstring& text, Number& field, bool& fits)
{
    std::size_t i = text.find_first_not_of(L" \t\n\v\f\r");
    i = i == text.npos ? text.size() : i;
    const bool isNegative = UnitAt(text, i) == L'-';
    if (isNegative || UnitAt(text, i) == L'+')
    {
        ++i;
    }
    int base = 10;
    // A prefix without digits is a zero and an "x" after it: so this C library reads it, while the
    // language's standard has it read nothing.
    bool hasDigits = UnitAt(text, i) == L'0';
    if (hasDigits)
    {
        const bool isHexadecimal = Lower(UnitAt(text, i + 1)) == L'x';
        base = isHexadecimal ? 16 : 8;
        i += isHexadecimal ? 2 : 0;
    }
    constexpr auto kLargest = static_cast<std::uint64_t>(std::numeric_limits<Number>::max());
    std::uint64_t value = 0;
    for (; i < text.size() && HexValue(text[i]) >= 0 && HexValue(text[i]) < base; ++i)
    {
        hasDigits = true;
        const auto digit = static_cast<std::uint64_t>(HexValue(text[i]));
        fits = fits && value <= (kLargest - digit) / static_cast<std::uint64_t>(base);
        value = value * static_cast<std::uint64_t>(base) + digit;
    }
    if (hasDigits)
    {
        const auto number = static_cast<Number>(value);
        field = isNegative && fits ? -number : number;
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
void SetNumber(const Given& given, Number& field, bool& fits)
{
    if (given)
    {
        ReadNumber(*given, field, fits);
    }
}

template <typename Source>
void Apply(const Source& source, Gathered& gathered)
{
    SendRequest& request = gathered.request;
    request.noDialog |= source(L"nodlg", L"").has_value();
    request.activateWindow |= source(L"activatewindow", L"").has_value();
    request.globSearch |= source(L"seaglob", L"").has_value();
    SetNumber(source(L"msg", L"="), request.messageOffset, gathered.numbersFit);
    SetNumber(source(L"lparam", L"="), request.lParam, gathered.numbersFit);
    SetNumber(source(L"wparam", L"="), request.wParam, gathered.numbersFit);
    SetText(source(L"kla", L"="), request.windowClass);
    SetText(source(L"nam", L"="), request.windowText);
    SetText(source(L"copydata", L"="), request.copyData);
    SetText(source(L"copydataencoding", L"="), request.copyDataEncoding);
}

inline Gathered GatherSwitches(const std::wstring& line)
{
    Gathered gathered;
    Apply([&](const std::wstring& name,
              const std::wstring& end) { return After(line, L" -" + name + end); },
          gathered);
    return gathered;
}

/// The request of a line that does not ask for help. Throws ReadBeyondEnd when the run ends without
/// a result.
inline Gathered Gather(const std::wstring& line)
{
    Gathered gathered = GatherSwitches(line);
    const Given url = After(line, L" -url=");
    const Parameters parameters = url ? ParseUrl(CutUrl(*url)) : Parameters();
    Apply(
        [&](const std::wstring& key, const std::wstring&) {
            const auto found = parameters.find(key);
            return found == parameters.end() ? Given() : Given(found->second);
        },
        gathered);
    return gathered;
}

} // namespace plain
