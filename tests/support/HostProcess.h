#pragma once

#include "tests/support/Process.h"

#include <cstddef>
#include <string>

/// A host window in a process of its own, which ends with this object. The waits stand for the same
/// moments as ScriptedHost's.
class HostProcess : public Process
{
public:
    /// Returns when the window is ready: shown, if it is to be, its thread handling messages, and
    /// the keyboard focus of a new window given to it. `words` are those of test_host: minimised,
    /// hidden, hang.
    HostProcess(const std::wstring& className, const std::wstring& title,
                const std::wstring& words = L"");

    /// Null when the window did not get ready.
    HWND Window() const { return m_window; }
    /// Waits until a message has arrived; a hanging host is inside its handler then, and stays
    /// there.
    bool WaitUntilReceived() const;
    /// Waits until a message has been handled to the end, so that its sender has the result.
    bool WaitUntilAnswered() const;
    /// How often the window has become the active one so far.
    std::size_t Activations() const;

private:
    HWND m_window = nullptr;
};
