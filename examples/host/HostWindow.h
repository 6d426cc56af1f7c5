#pragma once

#include <windows.h>

#include "examples/host/EventLog.h"
#include "examples/host/HostOptions.h"

#include <cstddef>
#include <deque>
#include <span>
#include <string>
#include <vector>

// The window class by which callers find this host (-kla=QuilletBeispielHost). A class name of
// one's own, together with the window text, keeps requests from reaching somebody else's window.
inline constexpr wchar_t kHostWindowClass[] = L"QuilletBeispielHost";

// The host's one window: takes requests, shows them, and answers.
//
// The window procedure only copies what arrives, posts itself a message and returns; all work is
// done from there, when the caller is no longer blocked in its send.
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
        UINT message;
        WPARAM wParam;  // WM_COPYDATA: the handle of the dialog that waits, 0 when none does
        LPARAM lParam;  // notification only
        ULONG_PTR data; // WM_COPYDATA only: dwData
        std::vector<std::byte> bytes; // WM_COPYDATA only
    };

    static LRESULT CALLBACK WindowProc(HWND window, UINT message, WPARAM wParam,
                                       LPARAM lParam) noexcept;
    LRESULT Handle(UINT message, WPARAM wParam, LPARAM lParam);

    LRESULT OnNotification(UINT message, WPARAM wParam, LPARAM lParam);
    LRESULT OnCopyData(WPARAM dialog, const COPYDATASTRUCT& data);
    void OnRequestTaken();
    void OnAnswerDue();

    void Show(const Request& request);
    void ShowText(std::span<const std::byte> bytes);
    void Answer(const Request& request);
    void PrepareAnswer();

    void CreateControls();
    void LayOut(int width, int height);

    HostOptions m_options;
    EventLog m_log;
    std::deque<Request> m_taken;      // not yet shown
    std::deque<Request> m_unanswered; // shown
    HWND m_window = nullptr;
    HWND m_caption = nullptr;
    HWND m_edit = nullptr;
    HWND m_button = nullptr; // only when the user answers
};
