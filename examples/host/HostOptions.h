#pragma once

#include "examples/host/ReceivedText.h"

#include <string>

// What the example host is asked to do, from its command line. See kHostUsage.
struct HostOptions
{
    std::wstring title = L"Beispiel-Host - Vorgang 4711";
    std::wstring logFile;           // path; empty: no log file
    int answer = 2;                 // the n of WM_USER + n
    unsigned delayMilliseconds = 0; // from the arrival to the answer
    bool answersByButton = false;   // only the user's click answers
    bool refusesCopyData = false;
    bool showsHelp = false;
    TextEncoding encoding = TextEncoding::Utf16;
    bool decodesBase64Url = false; // shows what texts carry as base64url of UTF-8
};

extern const wchar_t kHostUsage[];

// Reads the process's command line. An argument that is not understood asks for the help.
HostOptions ReadHostOptions();
