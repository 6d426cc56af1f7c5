#pragma once

#include <afxwin.h>

#include "app/ResultCode.h"

#include <cstdint>
#include <map>
#include <memory>
#include <string>

class CQuilletDlg;
struct SendRequest;

/// The settings that a URL carries: decoded values by key. Keys are compared by code units, so
/// their letter case counts.
using UrlParameters = std::map<std::wstring, std::wstring>;

/// The application: one process carries one request from its caller to a host window and ends with
/// the outcome as its exit code.
class CQuilletApp : public CWinApp
{
public:
    CQuilletApp();
    ~CQuilletApp() override;

    /// The whole run. Always FALSE, so that the framework goes straight to ExitInstance.
    BOOL InitInstance() override;
    /// The run's outcome: a ResultCode, or the n of the host's answer.
    int ExitInstance() override;

    /// Takes the query string of a null-terminated URL apart into decoded parameters; of a key's
    /// occurrences the first wins. Empty when the URL has no usable query string. Throws as
    /// UrlDecode does.
    static UrlParameters ParseUrlParameters(const wchar_t* url);
    /// Restores the percent escapes of control characters (not 0x1F), of the blank and of ASCII's
    /// punctuation (not "%"). Any other escape is taken together with one that follows directly, as
    /// two bytes of UTF-8, and stays as written when none does. Two units after a "%" are read
    /// before either is tested: throws CInvalidArgException when that runs past the end of the
    /// text, as for a final "%" but not for "50%2".
    static CString UrlDecode(CString text);
    /// Converts two bytes of UTF-8, the first in the high half, to one UTF-16 unit; 0 when the
    /// platform's conversion gives none.
    static wchar_t DecodeUtf8Pair(std::uint16_t bytes);

private:
    DECLARE_MESSAGE_MAP()

    /// The run, step by step; gives its outcome. (CWinApp::Run is the message loop that is never
    /// entered.)
    int ForwardRequest();
    void CreateWaitDialog(const SendRequest& request);
    /// What the run ends with when no answer is waited for; kResultSendFailed ends it at once.
    ResultCode Deliver(HWND target, const SendRequest& request);
    /// Gives the answer of the host or the user where one is waited for, else `withoutAnswer`.
    int Wait(const SendRequest& request, ResultCode withoutAnswer);

    int m_nReturnCode;
    /// Null when the run has no dialog. Its window can outlive InitInstance, so the object has to.
    std::unique_ptr<CQuilletDlg> m_dialog;
};
