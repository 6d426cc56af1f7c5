#include "CString.h"

#include "CWinApp.h"
#include "Exceptions.h"

CString::CString(const wchar_t* text) : m_units(text == nullptr ? L"" : text) {}

CString::CString(const wchar_t* text, int length) : m_units(text, static_cast<std::size_t>(length))
{
}

wchar_t CString::GetAt(int index) const
{
    if (index < 0 || index > GetLength())
    {
        AfxThrowInvalidArgException();
    }
    return m_units.c_str()[index];
}

int CString::Find(wchar_t unit, int start) const
{
    const std::size_t position = m_units.find(unit, static_cast<std::size_t>(start));
    return position == std::wstring::npos ? -1 : static_cast<int>(position);
}

CString& CString::operator+=(wchar_t unit)
{
    m_units += unit;
    return *this;
}

void CString::Append(const wchar_t* text, int length)
{
    m_units.append(text, static_cast<std::size_t>(length));
}

CString& CString::MakeLower()
{
    for (wchar_t& unit : m_units)
    {
        unit = static_cast<wchar_t>(unit >= L'A' && unit <= L'Z' ? unit + (L'a' - L'A') : unit);
    }
    return *this;
}

BOOL CString::LoadString(UINT id)
{
    // With room for no unit, the platform gives a pointer to the text in the module itself.
    const wchar_t* text = nullptr;
    const int length = ::LoadStringW(AfxFindResourceHandle(MAKEINTRESOURCEW(id), RT_STRING), id,
                                     reinterpret_cast<LPWSTR>(&text), 0);
    m_units.assign(text, text == nullptr ? 0 : static_cast<std::size_t>(length));
    return !IsEmpty();
}
