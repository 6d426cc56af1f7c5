#include "tests/support/ScriptedHost.h"

#include "tests/support/RunsUnderWine.h"
#include "tests/support/UniqueName.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <iostream>
#include <utility>

namespace
{

/// Posted to the host's thread, not to a window, so that nothing the program sends can be taken for
/// them. The thread takes one when all that it was doing before is done.
enum ThreadMessage : UINT
{
    kClose = WM_APP,
    kAnswered,
    kFocused,
};

/// Held while a host's thread makes its window, and while it ends. Threads that did so at the same
/// time hung under Wine 10, or spoilt the process's memory. Most likely because each opens an input
/// method of the X library and closes it again, in a list that the library does not guard.
std::mutex hostLifetimes;

void PostToOwnThread(ThreadMessage message)
{
    ::PostThreadMessageW(::GetCurrentThreadId(), message, 0, 0);
}

/// Wine asks a window this before it gives it the focus that comes from the window manager.
bool IsFocusFromWindowManager(UINT message, LPARAM lParam)
{
    return message == WM_MOUSEACTIVATE && LOWORD(lParam) == HTMENU;
}

ReceivedMessage Copy(UINT message, WPARAM wParam, LPARAM lParam)
{
    ReceivedMessage received{message, wParam, lParam, 0, {}};
    if (message == WM_COPYDATA)
    {
        const auto& data = *reinterpret_cast<const COPYDATASTRUCT*>(lParam);
        const auto* bytes = static_cast<const std::byte*>(data.lpData);
        received.data = data.dwData;
        received.bytes.assign(bytes, bytes + data.cbData);
    }
    return received;
}

/// What a caller sends; the platform's registered messages lie in between.
bool IsRequest(UINT message)
{
    constexpr UINT kFirstRegistered = 0xC000;
    return message == WM_COPYDATA || (message >= WM_USER && message < kFirstRegistered) ||
           message >= 0x10000;
}

} // namespace

std::wstring ReceivedMessage::Text() const
{
    std::wstring text(bytes.size() / sizeof(wchar_t), L'\0');
    std::memcpy(text.data(), bytes.data(), text.size() * sizeof(wchar_t));
    return text;
}

ScriptedHostOptions UniqueHost(std::wstring title)
{
    return {UniqueName(L"Host"), std::move(title)};
}

ScriptedHost::ScriptedHost(ScriptedHostOptions options, Script script)
    : m_options(std::move(options)), m_script(std::move(script))
{
    const std::scoped_lock lock(hostLifetimes);
    m_thread = std::thread([this] { Run(); });
    constexpr auto kLimit = std::chrono::milliseconds(kWaitLimit).count();
    if (::WaitForSingleObject(m_ready.get(), static_cast<DWORD>(kLimit)) != WAIT_OBJECT_0)
    {
        // The thread hangs and uses this object: it can be neither joined nor left alone.
        const auto* const test = testing::UnitTest::GetInstance()->current_test_info();
        std::cerr << "The host's window does not appear: "
                  << (test == nullptr ? "" : test->test_suite_name()) << '.'
                  << (test == nullptr ? "" : test->name()) << std::endl;
        std::abort();
    }
}

ScriptedHost::~ScriptedHost()
{
    const std::scoped_lock lock(hostLifetimes);
    ::PostThreadMessageW(m_threadId, kClose, 0, 0);
    m_thread.join();
}

void ScriptedHost::Run()
{
    const HINSTANCE module = ::GetModuleHandleW(nullptr);
    WNDCLASSW windowClass{};
    windowClass.lpfnWndProc = &Procedure;
    windowClass.hInstance = module;
    windowClass.lpszClassName = m_options.className.c_str();
    windowClass.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_WINDOW + 1);
    ::RegisterClassW(&windowClass);
    m_window = ::CreateWindowExW(m_options.extendedStyle, m_options.className.c_str(),
                                 m_options.title.c_str(), m_options.style, 100, 100, 400, 200,
                                 m_options.owner, nullptr, module, this);
    MSG message;
    // Makes the thread's queue, so that a posted message finds it.
    ::PeekMessageW(&message, nullptr, 0, 0, PM_NOREMOVE);
    m_threadId = ::GetCurrentThreadId();
    ::SetEvent(m_ready.get());
    while (::GetMessageW(&message, nullptr, 0, 0) > 0)
    {
        if (message.hwnd != nullptr)
        {
            ::TranslateMessage(&message);
            ::DispatchMessageW(&message);
        }
        else if (message.message == kClose)
        {
            break;
        }
        else
        {
            Note(message.message);
        }
    }
    if (::IsWindow(m_window))
    {
        ::DestroyWindow(m_window);
    }
    ::UnregisterClassW(m_options.className.c_str(), module);
}

void ScriptedHost::Note(UINT threadMessage)
{
    {
        const std::scoped_lock lock(m_mutex);
        m_answered += threadMessage == kAnswered ? 1 : 0;
        m_focused = m_focused || threadMessage == kFocused;
    }
    m_changed.notify_all();
}

LRESULT CALLBACK ScriptedHost::Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message == WM_NCCREATE)
    {
        const auto& creation = *reinterpret_cast<const CREATESTRUCTW*>(lParam);
        ::SetWindowLongPtrW(window, GWLP_USERDATA,
                            reinterpret_cast<LONG_PTR>(creation.lpCreateParams));
    }
    if (IsFocusFromWindowManager(message, lParam))
    {
        PostToOwnThread(kFocused);
    }
    auto* host = reinterpret_cast<ScriptedHost*>(::GetWindowLongPtrW(window, GWLP_USERDATA));
    if (host != nullptr && host->Records(message))
    {
        const auto result = host->Handle(window, Copy(message, wParam, lParam));
        if (IsRequest(message))
        {
            PostToOwnThread(kAnswered);
        }
        if (result)
        {
            return *result;
        }
    }
    return ::DefWindowProcW(window, message, wParam, lParam);
}

bool ScriptedHost::Records(UINT message) const
{
    return IsRequest(message) ||
           std::ranges::find(m_options.alsoRecord, message) != m_options.alsoRecord.end();
}

std::optional<LRESULT> ScriptedHost::Handle(HWND window, const ReceivedMessage& message)
{
    {
        const std::scoped_lock lock(m_mutex);
        m_received.push_back(message);
    }
    m_changed.notify_all();
    const auto result = m_script ? m_script(window, message) : std::nullopt;
    return !result && message.message == WM_COPYDATA ? 1 : result;
}

std::vector<ReceivedMessage> ScriptedHost::Received() const
{
    const std::scoped_lock lock(m_mutex);
    return m_received;
}

std::vector<ReceivedMessage> ScriptedHost::ReceivedSoFar() const
{
    // Handled after everything that is on its way; a registered message, which is not recorded.
    static const UINT fence = ::RegisterWindowMessageW(L"QuilletTestFence");
    ::SendMessageW(m_window, fence, 0, 0);
    return Received();
}

std::vector<ReceivedMessage> ScriptedHost::WaitForMessages(std::size_t count,
                                                           std::chrono::milliseconds limit) const
{
    std::unique_lock lock(m_mutex);
    m_changed.wait_for(lock, limit, [&] { return m_received.size() >= count; });
    return m_received;
}

bool ScriptedHost::WaitForAnswers(std::size_t count, std::chrono::milliseconds limit) const
{
    std::unique_lock lock(m_mutex);
    return m_changed.wait_for(lock, limit, [&] { return m_answered >= count; });
}

bool ScriptedHost::WaitForFocus() const
{
    constexpr std::chrono::seconds kRepeatAfter{3};
    bool focused = !RunsUnderWine();
    for (auto tries = kWaitLimit / kRepeatAfter; tries > 0 && !focused; --tries)
    {
        std::unique_lock lock(m_mutex);
        focused = m_changed.wait_for(lock, kRepeatAfter, [this] { return m_focused; });
        lock.unlock(); // for the window procedure
        if (!focused)
        {
            ::ShowWindow(m_window, SW_HIDE);
            ::ShowWindow(m_window, SW_SHOW);
        }
    }
    return focused;
}

ScriptedHost::Script AnswerWith(UINT n)
{
    return [n](HWND, const ReceivedMessage& message) -> std::optional<LRESULT> {
        if (message.message != WM_COPYDATA)
        {
            return std::nullopt;
        }
        ::PostMessageW(reinterpret_cast<HWND>(message.wParam), WM_USER + n, 0, 0);
        return TRUE;
    };
}

ScriptedHost::Script ReturnFromCopyData(LRESULT result)
{
    return [result](HWND, const ReceivedMessage& message) -> std::optional<LRESULT> {
        return message.message == WM_COPYDATA ? std::optional(result) : std::nullopt;
    };
}
