#include "app/TrimQuotedValue.h"

std::wstring_view TrimQuotedValue(std::wstring_view text) noexcept
{
    if (text.starts_with(L'"'))
    {
        text.remove_prefix(1);
        return text.substr(0, text.find(L'"'));
    }
    return text.substr(0, text.find(L' '));
}
