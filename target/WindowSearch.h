#pragma once

#include <windows.h>

/// What one walk over the top-level windows looks for, and what it found. Lives in the caller's
/// frame during the walk; the patterns are borrowed and must not change meanwhile.
struct WindowSearchContext
{
    /// Glob pattern for the class name, or null for any.
    const wchar_t* classPattern;
    /// Glob pattern for the window text, or null for any.
    const wchar_t* titlePattern;
    /// The first window that both patterns match; null until then.
    HWND foundWindow;
};

/// Callback for EnumWindows with the address of a WindowSearchContext. FALSE, which ends the walk,
/// when `window` matches.
BOOL CALLBACK EnumTargetWindowsProc(HWND window, LPARAM context) noexcept;

/// The topmost top-level window whose class and text match the given glob patterns (null for any),
/// or null. No window is passed over for being hidden, minimised, disabled, owned or this process's
/// own.
HWND FindWindowByPattern(const wchar_t* classPattern, const wchar_t* titlePattern);
