#include "CWinApp.h"

#include "CWnd.h"

namespace
{

CWinApp* currentApp = nullptr;

/// Offers a message to the target window and its parents, inner ones first.
bool PreTranslate(MSG& message)
{
    for (HWND hwnd = message.hwnd; hwnd != nullptr; hwnd = ::GetAncestor(hwnd, GA_PARENT))
    {
        CWnd* window = CWnd::FromHandlePermanent(hwnd);
        if (window != nullptr && window->PreTranslateMessage(&message))
        {
            return true;
        }
    }
    return false;
}

} // namespace

CWinApp::CWinApp()
{
    currentApp = this;
}

CWinApp::~CWinApp()
{
    currentApp = nullptr;
}

BOOL CWinApp::PumpMessage()
{
    MSG message;
    if (!::GetMessageW(&message, nullptr, 0, 0))
    {
        return FALSE;
    }
    if (!PreTranslate(message))
    {
        ::TranslateMessage(&message);
        ::DispatchMessageW(&message);
    }
    return TRUE;
}

void CWinApp::OnWindowGone(const CWnd* window)
{
    if (window == m_pMainWnd)
    {
        m_pMainWnd = nullptr;
        // A loop that still waits for the main window would wait for ever.
        ::PostQuitMessage(0);
    }
}

CWinApp* AfxGetApp()
{
    return currentApp;
}

CWnd* AfxGetMainWnd()
{
    return currentApp->m_pMainWnd;
}

HINSTANCE AfxFindResourceHandle(const wchar_t*, const wchar_t*)
{
    return ::GetModuleHandleW(nullptr);
}

int AfxWinMain()
{
    CWinApp& app = *AfxGetApp();
    app.InitInstance();
    if (app.m_pMainWnd != nullptr)
    {
        app.m_pMainWnd->DestroyWindow();
    }
    return app.ExitInstance();
}
