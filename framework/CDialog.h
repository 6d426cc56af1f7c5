#pragma once

#include "CWnd.h"

/// What DoDataExchange is told: whether it saves the controls' contents into members.
class CDataExchange
{
public:
    BOOL m_bSaveAndValidate;
};

/// A dialog made from a template of the module's resources. Its buttons IDOK and IDCANCEL end it
/// with their identifier; so do the Escape key and the caption's close command, with IDCANCEL.
class CDialog : public CWnd
{
public:
    explicit CDialog(UINT idTemplate, CWnd* parent = nullptr);

    /// Creates the window, modeless; without a parent, the application's main window owns it. TRUE
    /// on success.
    BOOL Create(UINT idTemplate, CWnd* parent = nullptr);
    /// Creates the window, shows it and waits for its end, with the owner disabled meanwhile,
    /// unless it already is. A template whose place is 0, 0 and that is not visible by itself
    /// appears over the owner's centre. Gives the result of EndDialog, or -1 when there is no
    /// window.
    virtual INT_PTR DoModal();
    /// Ends a running modal loop with `result`, and hides the window in any case.
    void EndDialog(int result);

    BOOL PreTranslateMessage(MSG* message) override;

    /// Runs when the controls exist. TRUE lets the platform set the focus to the first control.
    virtual BOOL OnInitDialog();

protected:
    DECLARE_MESSAGE_MAP()

    virtual void OnOK();
    virtual void OnCancel();

private:
    static INT_PTR CALLBACK DialogProc(HWND hwnd, UINT message, WPARAM wParam,
                                       LPARAM lParam) noexcept;
    void PressButton();
    void EndByCommand(int result);

    UINT m_idTemplate;
    CWnd* m_parent;
};
