#pragma once

#include "app/CommandLine.h"
#include "app/CommandLineSwitches.h"
#include "app/QuilletApp.h"
#include "app/SendRequest.h"
#include "app/UrlArgument.h"

#include <string>

/// The program's own steps from a command line, which does not ask for help, to the request. Throws
/// CInvalidArgException* when a value of the URL ends inside an escape.
inline SendRequest GatherRequest(const std::wstring& line)
{
    const CommandLine commandLine(line.c_str());
    SendRequest request;
    ReadSwitches(commandLine, request);
    const std::wstring url = CutUrlArgument(commandLine);
    if (!url.empty())
    {
        ApplyUrlParameters(CQuilletApp::ParseUrlParameters(url.c_str()), request);
    }
    return request;
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
