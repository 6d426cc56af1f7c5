#pragma once

#include <windows.h>

#include <string>

// Where the host tells what happens to it, a line at a time: standard output when the process has
// one, and a file (both in UTF-8 and at once); and the edit control given, which shows the last
// lines: anybody can make the host write as many as he likes.
class EventLog
{
public:
    // `path` empty: no file. An existing file is replaced.
    explicit EventLog(const std::wstring& path);
    ~EventLog();
    EventLog(const EventLog&) = delete;
    EventLog& operator=(const EventLog&) = delete;

    // The control is the window's and must outlive the last Show().
    void ShowIn(HWND edit) { m_edit = edit; }

    // Control characters in the line are shown as dots.
    void Write(const std::wstring& line);
    // Brings the control up to date.
    void Show();

private:
    HWND m_edit = nullptr;
    std::wstring m_text; // what the control shows, and perhaps some more
    bool m_isNew = false;
    HANDLE m_file = INVALID_HANDLE_VALUE;
};
