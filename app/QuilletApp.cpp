#include "app/QuilletApp.h"

#include "app/AbnormalEnd.h"
#include "app/CommandLine.h"
#include "app/GatherRequest.h"
#include "app/HelpText.h"
#include "app/ResultCode.h"
#include "app/SendRequest.h"
#include "delivery/CopyDataDelivery.h"
#include "delivery/QuilletDlg.h"
#include "res/resource.h"
#include "target/WindowActivation.h"
#include "target/WindowSearch.h"

namespace
{

void ShowHelp(const CommandLine& commandLine)
{
    ::MessageBoxW(nullptr, BuildHelpText(commandLine.Raw()).c_str(), L"Orvane",
                  MB_OK | MB_ICONINFORMATION);
}

bool NamesTarget(const SendRequest& request)
{
    return !request.windowClass.empty() || !request.windowText.empty();
}

/// The platform and the pattern search alike take a null pointer for "any".
const wchar_t* NullIfEmpty(const std::wstring& text)
{
    return text.empty() ? nullptr : text.c_str();
}

HWND FindTarget(const SendRequest& request)
{
    const auto find = request.globSearch ? &FindWindowByPattern : &::FindWindowW;
    return find(NullIfEmpty(request.windowClass), NullIfEmpty(request.windowText));
}

bool Notify(HWND target, const SendRequest& request)
{
    // 32-bit arithmetic without a range check, on purpose: a negative offset gives a number below
    // WM_USER.
    const UINT message = WM_USER + static_cast<UINT>(request.messageOffset);
    return ::SendNotifyMessageW(target, message, static_cast<WPARAM>(request.wParam),
                                request.lParam) != 0;
}

/// What the dialog's modal loop ended with, as result code. An answer is the message number itself,
/// so that WM_USER + 2 cannot be taken for the cancel command 2.
int ResultOfLoop(int loopResult)
{
    if (loopResult == IDCANCEL)
    {
        return kResultCancelled;
    }
    return loopResult >= WM_USER ? loopResult - WM_USER : loopResult;
}

} // namespace

BEGIN_MESSAGE_MAP(CQuilletApp, CWinApp)
    ON_COMMAND(ID_HELP, &CWinApp::OnHelp)
END_MESSAGE_MAP()

CQuilletApp::CQuilletApp() : m_nReturnCode(kResultCancelled)
{
    EndAbnormallyOnUncaughtException();
    // Whoever asks for a library by its name from now on, parts of the platform included, gets the
    // system's own, never a file that somebody put beside the program.
    ::SetDefaultDllDirectories(LOAD_LIBRARY_SEARCH_SYSTEM32);
}

CQuilletApp::~CQuilletApp() = default;

BOOL CQuilletApp::InitInstance()
{
    const CommandLine commandLine(::GetCommandLineW());

    if (AsksForHelp(commandLine))
    {
        ShowHelp(commandLine);
        m_nReturnCode = kResultCancelled;
        return FALSE;
    }

    const SendRequest request = GatherRequest(commandLine);

    // Before the search, so that the dialog's handle can travel with the copy-data message.
    CreateWaitDialog(request);

    // A request that names no target finds and sends nothing; it only waits. Meant so.
    if (NamesTarget(request))
    {
        const HWND target = FindTarget(request);
        if (target == nullptr)
        {
            m_nReturnCode = kResultWindowNotFound;
            return FALSE;
        }
        if (request.activateWindow)
        {
            ActivateTarget(target);
        }
        if (!Deliver(target, request))
        {
            return FALSE;
        }
    }

    Wait(request);
    return FALSE;
}

int CQuilletApp::ExitInstance()
{
    CWinApp::ExitInstance();
    return m_nReturnCode;
}

void CQuilletApp::CreateWaitDialog(const SendRequest& request)
{
    // Activation wants a window of the tool's own on screen, so it gets one even when no dialog is
    // asked for.
    if (request.noDialog && !request.activateWindow)
    {
        return;
    }
    m_dialog = std::make_unique<CQuilletDlg>();
    m_dialog->Create(IDD_QUILLET_DIALOG);
    m_pMainWnd = m_dialog.get();
    m_dialog->ShowWindow(request.noDialog ? SW_SHOWMINIMIZED : SW_SHOW);
}

// Whether the run goes on to the wait. An accepted copy-data message stores 0, an accepted
// notification nothing: without an answer the one ends with 0 and the other with -1. The difference
// is meant.
bool CQuilletApp::Deliver(HWND target, const SendRequest& request)
{
    if (request.copyData.empty())
    {
        const bool notified = Notify(target, request);
        if (!notified)
        {
            m_nReturnCode = kResultSendFailed;
        }
        return notified;
    }
    const HWND waitDialog = m_dialog == nullptr ? nullptr : m_dialog->GetSafeHwnd();
    m_nReturnCode = DeliverCopyData(target, request, waitDialog);
    return m_nReturnCode == kResultAccepted;
}

void CQuilletApp::Wait(const SendRequest& request)
{
    if (m_dialog == nullptr)
    {
        return;
    }
    if (request.noDialog)
    {
        // The minimised dialog served the activation only: one message, then it goes.
        PumpMessage();
    }
    else
    {
        m_nReturnCode = ResultOfLoop(m_dialog->RunModalLoop());
    }
    m_dialog->DestroyWindow();
    m_pMainWnd = nullptr;
}
