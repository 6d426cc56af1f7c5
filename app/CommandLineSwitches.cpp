#include "app/CommandLineSwitches.h"

#include "app/CommandLine.h"
#include "app/ReadNumber.h"
#include "app/SendRequest.h"
#include "app/TrimQuotedValue.h"

#include <string_view>

namespace
{

// The value comes from the lower-cased line: a hexadecimal number's prefix may be typed as 0X.
template <typename Number>
void ReadNumberSwitch(const CommandLine& commandLine, std::wstring_view switchText, Number& field)
{
    if (const wchar_t* value = commandLine.LowerBehind(switchText))
    {
        ReadNumber(value, field);
    }
}

void ReadTextSwitch(const CommandLine& commandLine, std::wstring_view switchText,
                    std::wstring& field)
{
    if (const auto value = commandLine.Behind(switchText))
    {
        field = TrimQuotedValue(*value);
    }
}

} // namespace

bool AsksForHelp(const CommandLine& commandLine)
{
    return commandLine.Has(L" -?");
}

void ReadSwitches(const CommandLine& commandLine, SendRequest& request)
{
    request.noDialog = commandLine.Has(L" -nodlg");
    request.activateWindow = commandLine.Has(L" -activatewindow");
    request.globSearch = commandLine.Has(L" -seaglob");

    ReadNumberSwitch(commandLine, L" -msg=", request.messageOffset);
    ReadNumberSwitch(commandLine, L" -lparam=", request.lParam);
    ReadNumberSwitch(commandLine, L" -wparam=", request.wParam);

    ReadTextSwitch(commandLine, L" -kla=", request.windowClass);
    ReadTextSwitch(commandLine, L" -nam=", request.windowText);
    ReadTextSwitch(commandLine, L" -copydata=", request.copyData);
    ReadTextSwitch(commandLine, L" -copydataencoding=", request.copyDataEncoding);
}
