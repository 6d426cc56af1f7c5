#pragma once

#include <windows.h>

#include "tests/support/UniqueHandle.h"
#include "tests/support/Waiting.h"

#include <condition_variable>
#include <cstddef>
#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

/// One message as a host window received it.
struct ReceivedMessage
{
    UINT message = 0;
    WPARAM wParam = 0;
    LPARAM lParam = 0;
    /// For WM_COPYDATA: dwData, and the bytes that cbData and lpData named at the time.
    ULONG_PTR data = 0;
    std::vector<std::byte> bytes;

    /// The bytes as UTF-16.
    std::wstring Text() const;
};

/// How a host window is made.
struct ScriptedHostOptions
{
    /// Registered for the window's lifetime.
    std::wstring className;
    std::wstring title = {};
    DWORD style = WS_OVERLAPPEDWINDOW | WS_VISIBLE;
    DWORD extendedStyle = 0;
    HWND owner = nullptr;
    /// Messages to record beside WM_COPYDATA and everything from WM_USER up.
    std::vector<UINT> alsoRecord = {};
};

/// The usual host: visible, with a class name of its own.
ScriptedHostOptions UniqueHost(std::wstring title = L"Host");

/// A host application's window on a thread of its own, with a scripted answer and a record of what
/// arrived. Seen from the program under test it belongs to another process.
///
/// The waits stand for different moments, and what a test may do next depends on which: a message
/// that has *arrived* is perhaps still being handled, and its sender waits; when it is *answered*,
/// the sender has its result.
class ScriptedHost
{
public:
    /// Runs on the host's thread for each recorded message, inside the window procedure. Its value
    /// is the message's result; without one, WM_COPYDATA is accepted (1) and everything else gets
    /// default processing.
    using Script = std::function<std::optional<LRESULT>(HWND host, const ReceivedMessage& message)>;

    /// Returns when the window exists (and is shown, if it is to be) and its thread handles
    /// messages. When that takes longer than kWaitLimit, the whole test program ends, with the name
    /// of the test.
    explicit ScriptedHost(ScriptedHostOptions options, Script script = {});
    /// Destroys the window, if it still exists, and ends the thread.
    ~ScriptedHost();
    ScriptedHost(const ScriptedHost&) = delete;
    ScriptedHost& operator=(const ScriptedHost&) = delete;

    HWND Handle() const { return m_window; }
    const std::wstring& ClassName() const { return m_options.className; }
    const std::wstring& Title() const { return m_options.title; }

    /// What has arrived so far, in order.
    std::vector<ReceivedMessage> Received() const;
    /// The same, with what is still on its way: everything that was sent before this call.
    std::vector<ReceivedMessage> ReceivedSoFar() const;
    /// Waits until at least `count` messages have arrived; gives what has arrived then, or by the
    /// limit. The last of them may still be in its handler.
    std::vector<ReceivedMessage>
    WaitForMessages(std::size_t count, std::chrono::milliseconds limit = kWaitLimit) const;
    /// Waits until at least `count` requests (WM_COPYDATA and everything from WM_USER up) have been
    /// handled to the end, so that their senders have the result. False when they have not by the
    /// limit.
    bool WaitForAnswers(std::size_t count, std::chrono::milliseconds limit = kWaitLimit) const;
    /// Waits until the window manager has given the window the focus that new windows get; under
    /// Wine that is some time after it is shown, and would otherwise fall into the test's next
    /// step. Wine 10 can miss it; the window is then hidden and shown, and gets it again.
    bool WaitForFocus() const;

private:
    static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
    void Run();
    void Note(UINT threadMessage);
    bool Records(UINT message) const;
    std::optional<LRESULT> Handle(HWND window, const ReceivedMessage& message);

    ScriptedHostOptions m_options;
    Script m_script;
    HWND m_window = nullptr;
    mutable std::mutex m_mutex;
    mutable std::condition_variable m_changed;
    std::vector<ReceivedMessage> m_received;
    std::size_t m_answered = 0;
    bool m_focused = false;
    const KernelHandle m_ready{::CreateEventW(nullptr, TRUE, FALSE, nullptr)};
    DWORD m_threadId = 0;
    std::thread m_thread;
};

/// A script that accepts every copy-data message and then posts the answer WM_USER + n to the
/// dialog that it names.
ScriptedHost::Script AnswerWith(UINT n);
/// A script that gives every copy-data message this result and never answers.
ScriptedHost::Script ReturnFromCopyData(LRESULT result);
