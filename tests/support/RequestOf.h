#pragma once

#include "app/CommandLine.h"
#include "app/GatherRequest.h"
#include "app/SendRequest.h"

#include <string>

/// What the program makes of a command line, program path included. Throws as GatherRequest does.
inline SendRequest RequestOf(const std::wstring& line)
{
    return GatherRequest(CommandLine(line.c_str()));
}

/// All fields of a request as one text, to compare and to print.
inline std::wstring TextOf(const SendRequest& request)
{
    return L"class [" + request.windowClass + L"] text [" + request.windowText + L"] copydata [" +
           request.copyData + L"] encoding [" + request.copyDataEncoding + L"] msg " +
           std::to_wstring(request.messageOffset) + L" wparam " + std::to_wstring(request.wParam) +
           L" lparam " + std::to_wstring(request.lParam) + (request.noDialog ? L" nodlg" : L"") +
           (request.activateWindow ? L" activatewindow" : L"") +
           (request.globSearch ? L" seaglob" : L"");
}
