#pragma once

#include <afxwin.h>

/// The wait dialog: the window that the host answers to. An answer is a message WM_USER + n with n
/// from 0 to 4,096; it ends the dialog with the message number as result. "Abbrechen", Escape and
/// the caption's close command end it with IDCANCEL. It never times out.
class CQuilletDlg : public CDialog
{
public:
    explicit CQuilletDlg(CWnd* parent = nullptr);
    ~CQuilletDlg() override;

protected:
    DECLARE_MESSAGE_MAP()

    void DoDataExchange(CDataExchange* exchange) override;
    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override;
    BOOL OnInitDialog() override;

    void OnSysCommand(UINT command, LPARAM lParam);
    void OnPaint();
    HCURSOR OnQueryDragIcon();

private:
    /// Ends what the user is doing with the dialog's menu or caption.
    void LeavePlatformLoop();
    void AppendAboutEntry(CMenu& systemMenu);
    void PaintMinimised();

    /// The application icon: both window icons, the minimised picture and the drag icon. Shared,
    /// never destroyed.
    HICON m_hIcon;
};
