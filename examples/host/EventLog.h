#pragma once

#include <windows.h>

#include <string>

// Where the host tells what happens to it, a line at a time and at once: the edit control given,
// standard output when the process has one, and a file (both in UTF-8).
class EventLog
{
public:
    // `path` empty: no file. An existing file is replaced.
    explicit EventLog(const std::wstring& path);
    ~EventLog();
    EventLog(const EventLog&) = delete;
    EventLog& operator=(const EventLog&) = delete;

    // The control is the window's and must outlive the last line.
    void ShowIn(HWND edit) { m_edit = edit; }

    void Write(const std::wstring& line);

private:
    HWND m_edit = nullptr;
    HANDLE m_file = INVALID_HANDLE_VALUE;
};
