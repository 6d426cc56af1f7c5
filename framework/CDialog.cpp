#include "CDialog.h"

#include "CWinApp.h"

#include <utility>

namespace
{

/// The dialog whose window the platform is creating. Its first message names the window.
CDialog* dialogBeingCreated = nullptr;

/// How many modal dialogs have not returned yet.
int openModalDialogs = 0;

/// The platform's keyboard handling takes the Execute key for Enter.
bool MeansEnter(WPARAM key)
{
    return key == VK_RETURN || key == VK_EXECUTE;
}

/// Whether the template leaves it open where the dialog appears: its place is 0, 0.
bool IsPlaceOpen(const wchar_t* name)
{
    const HINSTANCE module = AfxFindResourceHandle(name, RT_DIALOG);
    const auto* const words = static_cast<const WORD*>(
        ::LockResource(::LoadResource(module, ::FindResourceW(module, name, RT_DIALOG))));
    if (words == nullptr)
    {
        return false;
    }
    // The extended form, which this second word tells, has more in front of the place.
    constexpr WORD kExtendedSignature = 0xFFFF;
    const WORD* const place = words + (words[1] == kExtendedSignature ? 9 : 5);
    return place[0] == 0 && place[1] == 0;
}

bool IsPushButton(HWND control)
{
    constexpr LRESULT kPushButton = DLGC_DEFPUSHBUTTON | DLGC_UNDEFPUSHBUTTON;
    return (::SendMessageW(control, WM_GETDLGCODE, 0, 0) & kPushButton) != 0;
}

} // namespace

BEGIN_MESSAGE_MAP(CDialog, CWnd)
    ON_COMMAND(IDOK, &CDialog::OnOK)
    ON_COMMAND(IDCANCEL, &CDialog::OnCancel)
END_MESSAGE_MAP()

CDialog::CDialog(UINT idTemplate, CWnd* parent) : m_idTemplate(idTemplate), m_parent(parent) {}

BOOL CDialog::Create(UINT idTemplate, CWnd* parent)
{
    const wchar_t* name = MAKEINTRESOURCEW(idTemplate);
    CWnd* owner = parent != nullptr ? parent : AfxGetMainWnd();
    dialogBeingCreated = this;
    ::CreateDialogW(AfxFindResourceHandle(name, RT_DIALOG), name,
                    owner == nullptr ? nullptr : owner->GetSafeHwnd(), &DialogProc);
    dialogBeingCreated = nullptr;
    return m_hWnd != nullptr;
}

INT_PTR CALLBACK CDialog::DialogProc(HWND hwnd, UINT message, WPARAM, LPARAM) noexcept
{
    if (CDialog* created = std::exchange(dialogBeingCreated, nullptr))
    {
        created->SubclassWindow(hwnd);
    }
    if (message != WM_INITDIALOG)
    {
        return FALSE;
    }
    return static_cast<CDialog*>(FromHandlePermanent(hwnd))->OnInitDialog();
}

BOOL CDialog::OnInitDialog()
{
    CDataExchange exchange{FALSE};
    DoDataExchange(&exchange);
    return TRUE;
}

INT_PTR CDialog::DoModal()
{
    CWnd* owner = m_parent != nullptr ? m_parent : AfxGetMainWnd();
    if (!Create(m_idTemplate, owner))
    {
        return -1;
    }
    if (!IsWindowVisible() && IsPlaceOpen(MAKEINTRESOURCEW(m_idTemplate)))
    {
        CenterWindow();
    }
    // Several boxes can be open at once. The owner stays disabled until the one that disabled it
    // ends, which is the last one to return: the others run inside its loop.
    const bool disablesOwner = owner != nullptr && owner->IsWindowEnabled();
    if (disablesOwner)
    {
        owner->BeginModalState();
    }
    ShowWindow(SW_SHOWNORMAL);
    ++openModalDialogs;
    const int result = RunModalLoop();
    --openModalDialogs;
    // Enabled before the box goes away: else the platform would activate some other program's
    // window.
    if (disablesOwner)
    {
        owner->EndModalState();
    }
    DestroyWindow();
    return result;
}

void CDialog::EndDialog(int result)
{
    EndModalLoop(result);
    // The platform's own way to end a dialog may enable the owner, whoever disabled it, and with
    // another modal dialog open that would be too early.
    if (openModalDialogs > 1)
    {
        ShowWindow(SW_HIDE);
    }
    else
    {
        ::EndDialog(m_hWnd, result);
    }
}

void CDialog::OnOK()
{
    CDataExchange exchange{TRUE};
    DoDataExchange(&exchange);
    EndByCommand(IDOK);
}

void CDialog::OnCancel()
{
    EndByCommand(IDCANCEL);
}

// A command that comes as a message can find the dialog's menu open. The menu's loop is the
// platform's own and swallows what would wake the dialog's, so the menu is closed; the vendor's
// framework leaves that to the user.
void CDialog::EndByCommand(int result)
{
    EndDialog(result);
    GUITHREADINFO thread{};
    thread.cbSize = sizeof(thread);
    if (::GetGUIThreadInfo(::GetCurrentThreadId(), &thread) && thread.hwndMenuOwner == m_hWnd)
    {
        SendMessage(WM_CANCELMODE);
    }
}

BOOL CDialog::PreTranslateMessage(MSG* message)
{
    if (message->message < WM_KEYFIRST || message->message > WM_KEYLAST)
    {
        return FALSE;
    }
    if (message->message == WM_KEYDOWN && MeansEnter(message->wParam))
    {
        PressButton();
        return TRUE;
    }
    return ::IsDialogMessageW(m_hWnd, message);
}

// Enter means the button with the focus, or the first one when none has it (after a click beside
// it, or while the dialog is minimised). The platform's own handling is passed over on purpose:
// whenever the focus is not on a default push button it asks the dialog for its default command by
// sending it WM_USER + 0, a message that belongs to the dialog's own range.
void CDialog::PressButton()
{
    HWND button = ::GetFocus();
    if (!::IsChild(m_hWnd, button) || !IsPushButton(button))
    {
        button = ::GetNextDlgTabItem(m_hWnd, nullptr, FALSE);
    }
    SendMessage(WM_COMMAND, MAKEWPARAM(::GetDlgCtrlID(button), BN_CLICKED),
                reinterpret_cast<LPARAM>(button));
}
