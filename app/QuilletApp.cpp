#include "app/QuilletApp.h"

#include "app/AbnormalEnd.h"
#include "app/CommandLine.h"
#include "app/GatherRequest.h"
#include "app/HelpText.h"
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
    constexpr int kFirst = kFirstAnswer;
    if (loopResult == IDCANCEL)
    {
        return kResultCancelled;
    }
    return loopResult >= kFirst ? loopResult - kFirst : loopResult;
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
    m_nReturnCode = ForwardRequest();
    return FALSE;
}

int CQuilletApp::ExitInstance()
{
    CWinApp::ExitInstance();
    return m_nReturnCode;
}

int CQuilletApp::ForwardRequest()
{
    const CommandLine commandLine(::GetCommandLineW());

    if (AsksForHelp(commandLine))
    {
        ShowHelp(commandLine);
        return kResultCancelled;
    }

    const SendRequest request = GatherRequest(commandLine);

    // Before the search, so that the dialog's handle can travel with the copy-data message.
    CreateWaitDialog(request);

    // A request that names no target finds and sends nothing; it only waits. Intentional.
    if (!NamesTarget(request))
    {
        return Wait(request, kResultCancelled);
    }

    const HWND target = FindTarget(request);
    if (target == nullptr)
    {
        return kResultWindowNotFound;
    }
    if (request.activateWindow)
    {
        ActivateTarget(target);
    }
    const ResultCode delivered = Deliver(target, request);
    if (delivered == kResultSendFailed)
    {
        return delivered;
    }
    return Wait(request, delivered);
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

ResultCode CQuilletApp::Deliver(HWND target, const SendRequest& request)
{
    if (request.copyData.empty())
    {
        // Unlike a text that is accepted, a notification that is on its way is not 0. Intentional.
        return Notify(target, request) ? kResultCancelled : kResultSendFailed;
    }
    const HWND waitDialog = m_dialog == nullptr ? nullptr : m_dialog->GetSafeHwnd();
    return DeliverCopyData(target, request, waitDialog);
}

int CQuilletApp::Wait(const SendRequest& request, ResultCode withoutAnswer)
{
    if (m_dialog == nullptr)
    {
        return withoutAnswer;
    }
    int result = withoutAnswer;
    if (request.noDialog)
    {
        // The minimised dialog served the activation only: one message, then it goes.
        PumpMessage();
    }
    else
    {
        result = ResultOfLoop(m_dialog->RunModalLoop());
    }
    m_dialog->DestroyWindow();
    m_pMainWnd = nullptr;
    return result;
}
