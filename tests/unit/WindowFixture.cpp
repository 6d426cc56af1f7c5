#include "tests/unit/WindowFixture.h"

namespace
{

const wchar_t* PlainClass()
{
    static const ATOM kAtom = [] {
        WNDCLASSW windowClass{};
        windowClass.lpfnWndProc = &::DefWindowProcW;
        windowClass.hInstance = ::GetModuleHandleW(nullptr);
        windowClass.lpszClassName = L"QuilletUnitTest";
        return ::RegisterClassW(&windowClass);
    }();
    return MAKEINTATOM(kAtom);
}

constexpr UINT kLongestWait = 10'000; // milliseconds

void CALLBACK EndWait(HWND, UINT, UINT_PTR, DWORD) noexcept
{
    ADD_FAILURE() << "Waits for ever";
    ::PostQuitMessage(0);
}

} // namespace

BEGIN_MESSAGE_MAP(TestApp, CWinApp)
    ON_COMMAND(kCommand, &TestApp::OnTestCommand)
END_MESSAGE_MAP()

PlainWindow::PlainWindow(DWORD style, const CWnd* parent)
{
    EXPECT_TRUE(SubclassWindow(::CreateWindowExW(0, PlainClass(), L"", style, 0, 0, 200, 100,
                                                 parent == nullptr ? nullptr : parent->m_hWnd,
                                                 nullptr, ::GetModuleHandleW(nullptr), nullptr)));
}

WindowFixture::WindowFixture() : m_watchdog(::SetTimer(nullptr, 0, kLongestWait, &EndWait)) {}

WindowFixture::~WindowFixture()
{
    ::KillTimer(nullptr, m_watchdog);
    DrainQueue();
}

std::optional<WPARAM> DrainQueue()
{
    std::optional<WPARAM> exitCode;
    MSG message;
    while (::PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE))
    {
        if (message.message == WM_QUIT)
        {
            exitCode = message.wParam;
        }
        if (message.message == WM_PAINT)
        {
            // Comes again until somebody has painted.
            ::ValidateRect(message.hwnd, nullptr);
        }
    }
    return exitCode;
}
