#include "Exceptions.h"

void AfxThrowMemoryException()
{
    static CMemoryException outOfMemory;
    throw &outOfMemory;
}

void AfxThrowInvalidArgException()
{
    throw new CInvalidArgException;
}

void AfxThrowOleException(SCODE sc)
{
    auto* exception = new COleException;
    exception->m_sc = sc;
    throw exception;
}
