#include "delivery/AboutDlg.h"

#include "res/resource.h"

BEGIN_MESSAGE_MAP(CAboutDlg, CDialog)
END_MESSAGE_MAP()

CAboutDlg::CAboutDlg() : CDialog(IDD_ABOUTBOX) {}

CAboutDlg::~CAboutDlg() = default;

void CAboutDlg::DoDataExchange(CDataExchange* exchange)
{
    CDialog::DoDataExchange(exchange);
}
