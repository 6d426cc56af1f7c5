#pragma once

#include <windows.h>

#include "examples/host/EventLog.h"
#include "examples/host/HostOptions.h"

#include <cstddef>
#include <deque>
#include <string>
#include <vector>

// The window class by which callers find this host (-kla=QuilletBeispielHost). A class name of
// one's own, together with the window text, keeps requests from reaching somebody else's window.
inline constexpr wchar_t kHostWindowClass[] = L"QuilletBeispielHost";

// The host's one window: takes requests, shows them, and answers.
//
// The window procedure only copies what arrives into a queue, posts itself a message and returns;
// all work is done from there, when the caller is no longer blocked in its send. What is to be done
// is in the queues, and never follows from the arrival of a message: anybody can send any.
class HostWindow
{
public:
    explicit HostWindow(const HostOptions& options);
    HostWindow(const HostWindow&) = delete;
    HostWindow& operator=(const HostWindow&) = delete;

    // Creates and shows the window; false when the system refuses. Its end posts WM_QUIT.
    bool Create(HINSTANCE instance, int showCommand);

private:
    // One request as it arrived, copied: what a message points to is gone when its handler has
    // returned.
    struct Request
    {
        UINT message = 0;
        WPARAM wParam = 0; // WM_COPYDATA: the handle of the dialog that waits, 0 when none does
        LPARAM lParam = 0; // notification only
        // The rest but the last is of WM_COPYDATA only.
        ULONG_PTR data = 0;                // dwData
        DWORD size = 0;                    // cbData
        std::vector<std::byte> bytes = {}; // none when there are too many
        bool isRefused = false;
        ULONGLONG due = 0; // when to answer, in milliseconds since the system's start
    };

    static LRESULT CALLBACK WindowProc(HWND window, UINT message, WPARAM wParam,
                                       LPARAM lParam) noexcept;
    LRESULT Handle(UINT message, WPARAM wParam, LPARAM lParam);

    LRESULT OnNotification(UINT message, WPARAM wParam, LPARAM lParam);
    LRESULT OnCopyData(WPARAM dialog, const COPYDATASTRUCT& data);

    void Wake();
    void Work();
    void Show(const Request& request);
    void ShowText(const Request& request);

    ULONGLONG AnswerDue() const;
    void AnswerOldest();
    HWND DialogOf(const Request& request) const;
    bool IsOfAText(HWND dialog) const;

    void CreateControls();
    void LayOut();

    HostOptions m_options;
    EventLog m_log;
    std::deque<Request> m_taken;      // not yet shown
    std::deque<Request> m_unanswered; // shown; the oldest first, and so the one that is due first
    HWND m_window = nullptr;
    HWND m_caption = nullptr;
    HWND m_edit = nullptr;
    HWND m_button = nullptr; // only when the user answers
};
