#pragma once

#include <windows.h>

/// A menu. The object does not own the platform's menu.
class CMenu
{
public:
    /// An object for `menu`, or null for null. It is temporary: valid until the next call.
    static CMenu* FromHandle(HMENU menu);

    BOOL AppendMenu(UINT flags, UINT_PTR id = 0, const wchar_t* text = nullptr);

private:
    HMENU m_hMenu = nullptr;
};
