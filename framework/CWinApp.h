#pragma once

#include "CCmdTarget.h"

class CWnd;

/// The application object. A program has exactly one, constructed before the entry point runs; its
/// constructor registers it there. The entry point calls InitInstance; when that returns FALSE, it
/// destroys the main window if one is still registered, and ends the process with ExitInstance's
/// value.
class CWinApp : public CCmdTarget
{
public:
    CWinApp();
    ~CWinApp() override;

    /// The main window, or null. It owns modal dialogs, and its destruction clears it and asks the
    /// thread to quit.
    CWnd* m_pMainWnd = nullptr;

    /// The program's start; FALSE to end without a message loop of the application. There is no
    /// other kind of run here: a program that returns TRUE ends as well.
    virtual BOOL InitInstance() { return TRUE; }
    /// The last step; its value is the process's exit code.
    virtual int ExitInstance() { return 0; }

    /// Takes one message, waiting for it, and gives it to its window: for pre-translation to the
    /// target's chain of windows, else translated and dispatched. FALSE on WM_QUIT.
    virtual BOOL PumpMessage();

    /// The standard help command. There is no help file, so it does nothing.
    void OnHelp() {}

    /// Called when a window object has lost its platform window.
    void OnWindowGone(const CWnd* window);
};

/// The program's application object, or null before its construction.
CWinApp* AfxGetApp();
/// The application's main window, or null.
CWnd* AfxGetMainWnd();
/// The module that holds a resource: the program itself, as there are no others.
HINSTANCE AfxFindResourceHandle(const wchar_t* name, const wchar_t* type);
/// Runs the application object from start to end; the result is the process's exit code.
int AfxWinMain();
