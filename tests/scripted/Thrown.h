#pragma once

#include <afxdisp.h>
#include <afxwin.h>

#include <optional>

/// The HRESULT of the framework's OLE exception that `action` throws; nothing when it throws none.
template <typename Action>
std::optional<SCODE> ThrownCode(Action action)
{
    try
    {
        action();
    }
    catch (COleException* exception)
    {
        const SCODE code = exception->m_sc;
        exception->Delete();
        return code;
    }
    return std::nullopt;
}

/// Whether `action` throws the framework's memory exception.
template <typename Action>
bool RunsOutOfMemory(Action action)
{
    try
    {
        action();
    }
    catch (CMemoryException* exception)
    {
        exception->Delete();
        return true;
    }
    return false;
}
