// A leaf: delivery/ below uses it as well, so it includes nothing of this project.
#pragma once

#include <cstdint>
#include <string>

/// All settings of one run, as the switches and the URL give them. An empty text counts as not
/// given.
struct SendRequest
{
    /// The target's window class, or a glob pattern for it.
    std::wstring windowClass;
    /// The target's window text, or a glob pattern for it.
    std::wstring windowText;
    /// The text to send by WM_COPYDATA; empty: a notification is sent instead.
    std::wstring copyData;
    /// The name of the encoding of `copyData`; empty and unknown names mean UTF-16.
    std::wstring copyDataEncoding;
    /// The notification is WM_USER + this.
    std::int32_t messageOffset = 0;
    /// The notification's wParam, or the copy-data message's dwData.
    std::int64_t wParam = 0;
    /// The notification's lParam.
    std::int64_t lParam = 0;
    bool noDialog = false;
    bool activateWindow = false;
    /// Class and text are glob patterns, searched among all top-level windows.
    bool globSearch = false;
};
