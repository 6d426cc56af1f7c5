// The framework header that application sources include: windows, dialogs, strings, the application
// object. Names and documented behaviour are those of the platform vendor's dialog framework, as
// far as this tool uses it, so that the same sources build against either.
#pragma once

#include <windows.h>

#include "CDialog.h"
#include "CMenu.h"
#include "CPaintDC.h"
#include "CString.h"
#include "CWinApp.h"
#include "CWnd.h"
#include "Exceptions.h"
