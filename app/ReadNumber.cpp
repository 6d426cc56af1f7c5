#include "app/ReadNumber.h"

#include <cwchar>

// The scans' results are ignored on purpose: an unreadable number is not an error.

void ReadNumber(const wchar_t* text, std::int32_t& field) noexcept
{
    static_cast<void>(std::swscanf(text, L"%i", &field));
}

void ReadNumber(const wchar_t* text, std::int64_t& field) noexcept
{
    static_cast<void>(std::swscanf(text, L"%Ii", &field));
}
