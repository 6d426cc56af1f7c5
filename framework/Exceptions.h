// The framework's exceptions. As documented for it, they are thrown by pointer, and whoever catches
// one ends its life with Delete(). The tool itself catches none.
#pragma once

#include <windows.h>

/// As <wtypesbase.h> declares it, which would bring all of COM along.
using SCODE = LONG;

class CException
{
public:
    CException(const CException&) = delete;
    CException& operator=(const CException&) = delete;

    /// Releases the object; nothing may use it afterwards.
    virtual void Delete() { delete this; }

protected:
    CException() = default;
    virtual ~CException() = default;
};

/// Memory ran out. There is one object of it, which needs no memory to be thrown.
class CMemoryException : public CException
{
public:
    void Delete() override {}
};

/// An argument outside what the callee accepts, such as a position beyond a string's end.
class CInvalidArgException : public CException
{
};

/// A failure that the platform reported as an HRESULT.
class COleException : public CException
{
public:
    /// The failure's HRESULT.
    SCODE m_sc = S_OK;
};

[[noreturn]] void AfxThrowMemoryException();
[[noreturn]] void AfxThrowInvalidArgException();
[[noreturn]] void AfxThrowOleException(SCODE sc);
