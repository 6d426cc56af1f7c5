#pragma once

#include <windows.h>

#include <string>

/// A string of UTF-16 code units, which may hold zeros anywhere. Positions and lengths count code
/// units from 0.
class CString
{
public:
    CString() = default;
    /// Copies a null-terminated text; null gives the empty string.
    CString(const wchar_t* text);
    /// Copies `length` code units, zeros included.
    CString(const wchar_t* text, int length);

    int GetLength() const { return static_cast<int>(m_units.size()); }
    bool IsEmpty() const { return m_units.empty(); }

    /// The null-terminated units; valid until the string is changed or destroyed.
    const wchar_t* GetString() const { return m_units.c_str(); }
    operator const wchar_t*() const { return GetString(); }

    /// The unit at `index`. The position equal to the length reads the terminating zero; a position
    /// below 0 or beyond that throws CInvalidArgException.
    wchar_t GetAt(int index) const;

    /// The position of the first `unit` at or after `start`, or -1.
    int Find(wchar_t unit, int start = 0) const;

    CString& operator+=(wchar_t unit);
    /// Appends `length` code units of `text`, zeros included.
    void Append(const wchar_t* text, int length);

    /// Lower-cases A to Z in place, one unit for one unit, and nothing else, whatever the locale:
    /// what the documented one does in the C locale, which the tool never leaves.
    CString& MakeLower();

    /// Loads a string of the module's string table. FALSE, and an empty string, when there is none.
    BOOL LoadString(UINT id);

private:
    std::wstring m_units;
};
