#include "app/GatherRequest.h"

#include "app/CommandLine.h"
#include "app/QuilletApp.h"
#include "app/ReadNumber.h"
#include "app/SendRequest.h"
#include "app/TrimQuotedValue.h"
#include "app/UrlArgument.h"

#include <optional>
#include <string>
#include <string_view>

namespace
{

// Settings come from two sources, which answer the same three questions by a setting's name:
// whether the flag is there; where its number begins, null-terminated, or null; what its text is to
// be cut from, or nothing. The answers refer into the source.

/// The command line's switches: " -name" for a flag, " -name=" before a value.
class Switches
{
public:
    explicit Switches(const CommandLine& commandLine) : m_commandLine(commandLine) {}

    bool HasFlag(const std::wstring& name) const { return m_commandLine.Has(L" -" + name); }
    /// From the lower-cased line, though letter case makes no difference to a number.
    const wchar_t* Number(const std::wstring& name) const
    {
        return m_commandLine.LowerAfter(L" -" + name + L'=');
    }
    std::optional<std::wstring_view> Text(const std::wstring& name) const
    {
        return m_commandLine.After(L" -" + name + L'=');
    }

private:
    const CommandLine& m_commandLine;
};

/// The parameters of the URL, whose keys are the names. Any value sets a flag, even "0".
class Url
{
public:
    explicit Url(const std::wstring& url)
        : m_parameters(CQuilletApp::ParseUrlParameters(url.c_str()))
    {
    }

    bool HasFlag(const std::wstring& name) const { return m_parameters.contains(name); }
    const wchar_t* Number(const std::wstring& name) const
    {
        const auto parameter = m_parameters.find(name);
        return parameter == m_parameters.end() ? nullptr : parameter->second.c_str();
    }
    /// Decoded before it is trimmed, and that order is meant: an escaped blank ends an unquoted
    /// value, and a text with blanks travels quoted and escaped (%22Mein%20Fenster%22).
    std::optional<std::wstring_view> Text(const std::wstring& name) const
    {
        const auto parameter = m_parameters.find(name);
        return parameter == m_parameters.end()
                   ? std::nullopt
                   : std::optional<std::wstring_view>(parameter->second);
    }

private:
    UrlParameters m_parameters;
};

/// A flag can only be set: no source clears what another has set.
template <typename Source>
void SetFlag(const Source& source, const wchar_t* name, bool& field)
{
    field = field || source.HasFlag(name);
}

template <typename Source, typename Number>
void SetNumber(const Source& source, const wchar_t* name, Number& field)
{
    if (const wchar_t* number = source.Number(name))
    {
        ReadNumber(number, field);
    }
}

/// A text that is given replaces the field, even when it is empty.
template <typename Source>
void SetText(const Source& source, const wchar_t* name, std::wstring& field)
{
    if (const auto text = source.Text(name))
    {
        field = TrimQuotedValue(*text);
    }
}

/// All settings there are. What the source does not give stays as it is.
template <typename Source>
void ReadSettings(const Source& source, SendRequest& request)
{
    SetFlag(source, L"nodlg", request.noDialog);
    SetFlag(source, L"activatewindow", request.activateWindow);
    SetFlag(source, L"seaglob", request.globSearch);

    SetNumber(source, L"msg", request.messageOffset);
    SetNumber(source, L"lparam", request.lParam);
    SetNumber(source, L"wparam", request.wParam);

    SetText(source, L"kla", request.windowClass);
    SetText(source, L"nam", request.windowText);
    SetText(source, L"copydata", request.copyData);
    SetText(source, L"copydataencoding", request.copyDataEncoding);
}

} // namespace

bool AsksForHelp(const CommandLine& commandLine)
{
    return commandLine.Has(L" -?");
}

SendRequest GatherRequest(const CommandLine& commandLine)
{
    SendRequest request;
    ReadSettings(Switches(commandLine), request);
    const std::wstring url = CutUrlArgument(commandLine);
    if (!url.empty())
    {
        ReadSettings(Url(url), request);
    }
    return request;
}
