#include "tests/support/HostWindow.h"

#include <algorithm>
#include <utility>

namespace
{

/// Asks the host's thread to destroy its window. A registered message: no number that the program
/// could send.
UINT CloseMessage()
{
    static const UINT message = ::RegisterWindowMessageW(L"QuilletTestHostClose");
    return message;
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

} // namespace

HostWindow::HostWindow(HostOptions options, Script script)
    : m_options(std::move(options)), m_script(std::move(script)),
      m_ready(::CreateEventW(nullptr, TRUE, FALSE, nullptr)), m_thread([this] { Run(); })
{
    ::WaitForSingleObject(m_ready, INFINITE);
}

HostWindow::~HostWindow()
{
    // Posted to the thread, so that it also ends when the window is gone already.
    ::PostThreadMessageW(m_threadId, CloseMessage(), 0, 0);
    m_thread.join();
    ::CloseHandle(m_ready);
}

void HostWindow::Run()
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
    ::SetEvent(m_ready);
    while (::GetMessageW(&message, nullptr, 0, 0) > 0 && message.message != CloseMessage())
    {
        ::TranslateMessage(&message);
        ::DispatchMessageW(&message);
    }
    if (::IsWindow(m_window))
    {
        ::DestroyWindow(m_window);
    }
    ::UnregisterClassW(m_options.className.c_str(), module);
}

LRESULT CALLBACK HostWindow::Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message == WM_NCCREATE)
    {
        const auto& creation = *reinterpret_cast<const CREATESTRUCTW*>(lParam);
        ::SetWindowLongPtrW(window, GWLP_USERDATA,
                            reinterpret_cast<LONG_PTR>(creation.lpCreateParams));
    }
    auto* host = reinterpret_cast<HostWindow*>(::GetWindowLongPtrW(window, GWLP_USERDATA));
    if (host != nullptr && host->Records(message))
    {
        if (const auto result = host->Handle(window, Copy(message, wParam, lParam)))
        {
            return *result;
        }
    }
    return ::DefWindowProcW(window, message, wParam, lParam);
}

bool HostWindow::Records(UINT message) const
{
    constexpr UINT kFirstRegistered = 0xC000;
    return message == WM_COPYDATA || (message >= WM_USER && message < kFirstRegistered) ||
           message >= 0x10000 ||
           std::ranges::find(m_options.alsoRecord, message) != m_options.alsoRecord.end();
}

std::optional<LRESULT> HostWindow::Handle(HWND window, const ReceivedMessage& message)
{
    {
        const std::scoped_lock lock(m_mutex);
        m_received.push_back(message);
    }
    m_arrived.notify_all();
    const auto result = m_script ? m_script(window, message) : std::nullopt;
    return !result && message.message == WM_COPYDATA ? 1 : result;
}

std::vector<ReceivedMessage> HostWindow::Received() const
{
    const std::scoped_lock lock(m_mutex);
    return m_received;
}

std::vector<ReceivedMessage> HostWindow::WaitForMessages(size_t count,
                                                         std::chrono::milliseconds limit) const
{
    std::unique_lock lock(m_mutex);
    m_arrived.wait_for(lock, limit, [&] { return m_received.size() >= count; });
    return m_received;
}

HostWindow::Script AnswerWith(UINT n)
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

HostWindow::Script ReturnFromCopyData(LRESULT result)
{
    return [result](HWND, const ReceivedMessage& message) -> std::optional<LRESULT> {
        return message.message == WM_COPYDATA ? std::optional(result) : std::nullopt;
    };
}
