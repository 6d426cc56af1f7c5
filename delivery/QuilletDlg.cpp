#include "delivery/QuilletDlg.h"

#include "app/ResultCode.h"
#include "delivery/AboutDlg.h"
#include "res/resource.h"

namespace
{

/// The low four bits of a system command's id belong to the platform.
constexpr UINT kSystemCommandMask = 0xFFF0;

constexpr UINT kWmIconEraseBackground = 0x0027;

HICON LoadApplicationIcon()
{
    const wchar_t* name = MAKEINTRESOURCEW(IDR_MAINFRAME);
    return ::LoadIconW(AfxFindResourceHandle(name, RT_GROUP_ICON), name);
}

} // namespace

BEGIN_MESSAGE_MAP(CQuilletDlg, CDialog)
    ON_WM_SYSCOMMAND()
    ON_WM_PAINT()
    ON_WM_QUERYDRAGICON()
END_MESSAGE_MAP()

CQuilletDlg::CQuilletDlg(CWnd* parent)
    : CDialog(IDD_QUILLET_DIALOG, parent), m_hIcon(LoadApplicationIcon())
{
}

CQuilletDlg::~CQuilletDlg() = default;

void CQuilletDlg::DoDataExchange(CDataExchange* exchange)
{
    CDialog::DoDataExchange(exchange);
}

LRESULT CQuilletDlg::WindowProc(UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message >= kFirstAnswer && message <= kLastAnswer)
    {
        EndDialog(static_cast<int>(message));
        LeavePlatformLoop();
    }
    // An answer gets its default processing, too.
    return CDialog::WindowProc(message, wParam, lParam);
}

// An open menu and a window that is being moved each have a loop of the platform's own, which
// swallows what would wake the dialog's: the run would wait until its user is done, and longer when
// the window that is moved has gone. WM_CANCELMODE closes a menu; the moving it would only make
// deaf to the mouse, so that one is told that the button is up.
void CQuilletDlg::LeavePlatformLoop()
{
    GUITHREADINFO thread{};
    thread.cbSize = sizeof(thread);
    if (!::GetGUIThreadInfo(::GetCurrentThreadId(), &thread))
    {
        return;
    }
    if (thread.hwndMenuOwner == m_hWnd)
    {
        SendMessage(WM_CANCELMODE);
    }
    if (thread.hwndMoveSize == m_hWnd)
    {
        PostMessage(WM_LBUTTONUP);
    }
}

BOOL CQuilletDlg::OnInitDialog()
{
    CDialog::OnInitDialog();
    if (CMenu* systemMenu = GetSystemMenu(FALSE))
    {
        AppendAboutEntry(*systemMenu);
    }
    SendMessage(WM_SETICON, ICON_BIG, reinterpret_cast<LPARAM>(m_hIcon));
    SendMessage(WM_SETICON, ICON_SMALL, reinterpret_cast<LPARAM>(m_hIcon));
    return TRUE;
}

void CQuilletDlg::AppendAboutEntry(CMenu& systemMenu)
{
    CString text;
    text.LoadString(IDS_ABOUTBOX);
    if (!text.IsEmpty())
    {
        systemMenu.AppendMenu(MF_SEPARATOR);
        systemMenu.AppendMenu(MF_STRING, IDM_ABOUTBOX, text);
    }
}

void CQuilletDlg::OnSysCommand(UINT command, LPARAM lParam)
{
    if ((command & kSystemCommandMask) == IDM_ABOUTBOX)
    {
        CAboutDlg().DoModal();
    }
    else
    {
        CDialog::OnSysCommand(command, lParam);
    }
}

void CQuilletDlg::OnPaint()
{
    if (IsIconic())
    {
        PaintMinimised();
    }
    else
    {
        CDialog::OnPaint();
    }
}

void CQuilletDlg::PaintMinimised()
{
    CPaintDC dc(this);
    SendMessage(kWmIconEraseBackground, reinterpret_cast<WPARAM>(dc.GetSafeHdc()));
    const int iconWidth = ::GetSystemMetrics(SM_CXICON);
    const int iconHeight = ::GetSystemMetrics(SM_CYICON);
    RECT client;
    GetClientRect(&client);
    // Signed division truncates toward zero: an icon in an empty client area starts at -15, not
    // -16.
    dc.DrawIcon((client.right - client.left - iconWidth + 1) / 2,
                (client.bottom - client.top - iconHeight + 1) / 2, m_hIcon);
}

HCURSOR CQuilletDlg::OnQueryDragIcon()
{
    return m_hIcon;
}
