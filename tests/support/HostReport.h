#pragma once

#include <windows.h>

#include <cstddef>

/// What a host in a process of its own tells the test: counters in properties of its window, which
/// every process of the desktop can read.
inline constexpr const wchar_t* kReportReady = L"QuilletTest.Ready";
inline constexpr const wchar_t* kReportReceived = L"QuilletTest.Received";
inline constexpr const wchar_t* kReportAnswered = L"QuilletTest.Answered";
inline constexpr const wchar_t* kReportActivated = L"QuilletTest.Activated";

/// How often `what` has been reported by the window so far; 0 when there is no such window.
inline std::size_t Reported(HWND window, const wchar_t* what)
{
    return reinterpret_cast<std::size_t>(::GetPropW(window, what));
}

/// Reports `what` once more.
inline void Report(HWND window, const wchar_t* what)
{
    ::SetPropW(window, what, reinterpret_cast<HANDLE>(Reported(window, what) + 1));
}
