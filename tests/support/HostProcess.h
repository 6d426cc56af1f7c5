#pragma once

#include "tests/support/Process.h"

/// A host window in a process of its own, which ends with this object.
class HostProcess : public Process
{
public:
    /// Returns when the window exists. `words` are those of test_host: minimised, hidden, hang.
    HostProcess(const std::wstring& className, const std::wstring& title,
                const std::wstring& words = L"");

    HWND Window() const { return m_window; }
    /// Waits until a message has arrived; a hanging host is inside its handler then.
    bool WaitUntilReceived() const;

private:
    HWND m_window = nullptr;
};
