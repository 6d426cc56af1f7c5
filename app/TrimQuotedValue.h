#pragma once

#include <string_view>

/// The value of a switch or URL parameter that `text` begins with, as a part of `text`. If that
/// begins with a double quote, the value is what stands between this and the next one, or
/// everything after it when there is no other. Otherwise the value ends before the first blank; a
/// tab or a quote inside is kept. There is no escape: a quoted value cannot hold a quote.
std::wstring_view TrimQuotedValue(std::wstring_view text) noexcept;
