#include "app/CommandLine.h"

#include <afxwin.h>

CommandLine::CommandLine(const wchar_t* raw) : m_raw(raw), m_lower(CString(raw).MakeLower()) {}

bool CommandLine::Has(std::wstring_view switchText) const
{
    return m_lower.find(switchText) != std::wstring::npos;
}

std::optional<std::wstring_view> CommandLine::After(std::wstring_view switchText) const
{
    const std::size_t position = m_lower.find(switchText);
    if (position == std::wstring::npos)
    {
        return std::nullopt;
    }
    return std::wstring_view(m_raw).substr(position + switchText.size());
}

const wchar_t* CommandLine::LowerAfter(std::wstring_view switchText) const
{
    const auto value = After(switchText);
    return value ? m_lower.c_str() + (m_lower.size() - value->size()) : nullptr;
}
