#include "app/ReadNumber.h"

#include <cwchar>

namespace
{

// The platform library's own scan: a toolchain that brings another one of the same name along, with
// other results for "0x" and for numbers beyond the field, still offers the platform's under this.
#ifdef __MINGW32__
constexpr auto kScan = &__ms_swscanf;
#else
constexpr auto kScan = &std::swscanf;
#endif

} // namespace

// The scans' results are ignored on purpose: an unreadable number is not an error.

void ReadNumber(const wchar_t* text, std::int32_t& field) noexcept
{
    static_cast<void>(kScan(text, L"%i", &field));
}

void ReadNumber(const wchar_t* text, std::int64_t& field) noexcept
{
    static_cast<void>(kScan(text, L"%Ii", &field));
}
