#include "CDialog.h"

#include "CWinApp.h"

#include <utility>

namespace
{

/// The dialog whose window the platform is creating. Its first message names the window.
CDialog* dialogBeingCreated = nullptr;

/// The keys that the platform's keyboard handling takes for Enter.
bool PressesDefaultButton(WPARAM key)
{
    return key == VK_RETURN || key == VK_EXECUTE;
}

bool HasDialogCode(HWND control, LRESULT code)
{
    return (::SendMessageW(control, WM_GETDLGCODE, 0, 0) & code) != 0;
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
    ::CreateDialogParamW(AfxFindResourceHandle(name, RT_DIALOG), name,
                         owner == nullptr ? nullptr : owner->GetSafeHwnd(), &DialogProc, 0);
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
    if (owner != nullptr)
    {
        owner->BeginModalState();
    }
    ShowWindow(SW_SHOWNORMAL);
    const int result = RunModalLoop();
    // Enabled before the box goes away: else the platform would activate some other program's
    // window.
    if (owner != nullptr)
    {
        owner->EndModalState();
    }
    DestroyWindow();
    return result;
}

void CDialog::EndDialog(int result)
{
    EndModalLoop(result);
    ::EndDialog(m_hWnd, result);
}

void CDialog::OnOK()
{
    CDataExchange exchange{TRUE};
    DoDataExchange(&exchange);
    EndDialog(IDOK);
}

void CDialog::OnCancel()
{
    EndDialog(IDCANCEL);
}

BOOL CDialog::PreTranslateMessage(MSG* message)
{
    if (message->message < WM_KEYFIRST || message->message > WM_KEYLAST)
    {
        return FALSE;
    }
    if (message->message == WM_KEYDOWN && PressesDefaultButton(message->wParam))
    {
        PrepareForEnter();
    }
    return ::IsDialogMessageW(m_hWnd, message);
}

// When the focus is not on a default push button, the platform's keyboard handling asks the dialog
// for its default command by sending it WM_USER + 0, a message that belongs to the dialog's own
// range. So that Enter always means the button with the focus, that button is made the default one
// first; and when no button has the focus (after a click beside it, say), the first one gets it.
void CDialog::PrepareForEnter()
{
    HWND button = ::GetFocus();
    if (!::IsChild(m_hWnd, button) ||
        !HasDialogCode(button, DLGC_DEFPUSHBUTTON | DLGC_UNDEFPUSHBUTTON))
    {
        button = ::GetNextDlgTabItem(m_hWnd, nullptr, FALSE);
        ::SetFocus(button);
    }
    if (HasDialogCode(button, DLGC_UNDEFPUSHBUTTON))
    {
        ::SendMessageW(button, BM_SETSTYLE, BS_DEFPUSHBUTTON, TRUE);
    }
}
