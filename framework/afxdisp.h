// The framework header for the OLE exception. See afxwin.h.
#pragma once

#include "Exceptions.h"
