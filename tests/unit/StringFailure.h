#pragma once

#include <afxwin.h>

/// What the framework's string throws, by pointer, at a position beyond its text. Which of its
/// exceptions the vendor's throws is not documented.
#ifdef _MSC_VER
using StringFailure = CException;
#else
using StringFailure = CInvalidArgException;
#endif
