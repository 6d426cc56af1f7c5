#pragma once

#include "tests/support/Process.h"

#include <string>
#include <string_view>
#include <vector>

inline constexpr const wchar_t* kWaitDialogCaption = L"Orvane Anwendungsweiterleitung";
inline constexpr const wchar_t* kAboutBoxCaption = L"Info über Quillet";

/// A run of the real program.
class QuilletRun : public Process
{
public:
    /// Starts the built program with the raw text `arguments` after its quoted path; the text
    /// begins with the blank that the first switch needs. `showCommand`: see Process.
    explicit QuilletRun(std::wstring_view arguments,
                        std::optional<WORD> showCommand = std::nullopt);

    /// The command line that such a run is started with.
    static std::wstring CommandLine(std::wstring_view arguments);

    /// The wait dialog, once its window exists; null when none appears or the process ends. What is
    /// posted to it now is handled in the wait; what is *sent* now can be handled before the wait
    /// has begun, which then knows nothing of it.
    HWND WaitForDialog() const;
    /// The wait dialog, once it waits: its loop handles what is posted, and so it has been shown.
    /// Null when it never does. It need not be in the foreground.
    HWND WaitForWaitingDialog() const;
    /// The wait dialog as it is now; null when there is none.
    HWND Dialog() const;
};

/// Starts the program with `arguments`, waits for its end and gives its exit code. Fails the test,
/// and gives a value that is no exit code of the program, when it does not end.
int RunQuillet(std::wstring_view arguments);

/// The top-level windows of the process with this class (null: any) and text (null: any), from the
/// top down.
std::vector<HWND> FindProcessWindows(DWORD processId, const wchar_t* className,
                                     const wchar_t* text);
/// The first of them; null when there is none.
HWND FindProcessWindow(DWORD processId, const wchar_t* className, const wchar_t* text);
