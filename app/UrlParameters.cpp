#include "app/UrlParameters.h"

#include "app/ReadNumber.h"
#include "app/SendRequest.h"
#include "app/TrimQuotedValue.h"

namespace
{

void SetFlag(const UrlParameters& parameters, const wchar_t* key, bool& field)
{
    field = field || parameters.contains(key);
}

template <typename Number>
void SetNumber(const UrlParameters& parameters, const wchar_t* key, Number& field)
{
    const auto parameter = parameters.find(key);
    if (parameter != parameters.end())
    {
        ReadNumber(parameter->second.c_str(), field);
    }
}

// The value has been decoded before it is trimmed, and that order is meant: an escaped blank ends
// an unquoted value, and a text with blanks travels quoted and escaped (%22Mein%20Fenster%22).
void SetText(const UrlParameters& parameters, const wchar_t* key, std::wstring& field)
{
    const auto parameter = parameters.find(key);
    if (parameter != parameters.end())
    {
        field = TrimQuotedValue(parameter->second);
    }
}

} // namespace

void ApplyUrlParameters(const UrlParameters& parameters, SendRequest& request)
{
    SetFlag(parameters, L"nodlg", request.noDialog);
    SetFlag(parameters, L"activatewindow", request.activateWindow);
    SetFlag(parameters, L"seaglob", request.globSearch);

    SetNumber(parameters, L"msg", request.messageOffset);
    SetNumber(parameters, L"lparam", request.lParam);
    SetNumber(parameters, L"wparam", request.wParam);

    SetText(parameters, L"kla", request.windowClass);
    SetText(parameters, L"nam", request.windowText);
    SetText(parameters, L"copydata", request.copyData);
    SetText(parameters, L"copydataencoding", request.copyDataEncoding);
}
