#pragma once

#include <afxwin.h>

/// The About box. It has no code of its own beyond its template.
class CAboutDlg : public CDialog
{
public:
    CAboutDlg();
    ~CAboutDlg() override;

protected:
    DECLARE_MESSAGE_MAP()

    void DoDataExchange(CDataExchange* exchange) override;
};
