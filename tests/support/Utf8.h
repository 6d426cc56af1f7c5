#pragma once

#include "tests/support/CodePage.h"

/// UTF-16 as UTF-8.
inline std::string Utf8(std::wstring_view text)
{
    return InCodePage(CP_UTF8, text);
}
