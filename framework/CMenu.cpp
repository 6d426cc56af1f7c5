#include "CMenu.h"

CMenu* CMenu::FromHandle(HMENU menu)
{
    static CMenu temporary;
    temporary.m_hMenu = menu;
    return menu == nullptr ? nullptr : &temporary;
}

BOOL CMenu::AppendMenu(UINT flags, UINT_PTR id, const wchar_t* text)
{
    return ::AppendMenuW(m_hMenu, flags, id, text);
}
