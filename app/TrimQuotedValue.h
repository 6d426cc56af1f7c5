#pragma once

#include <string_view>

/// Cuts the value of a switch or URL parameter out of `text`, and gives the part of `text` that it
/// is. A text that begins with a double quote gives what stands between it and the next one, or
/// everything behind it when there is no other. Any other text ends before its first blank; a tab
/// or a quote inside is kept. There is no escape: a quoted value cannot hold a quote.
std::wstring_view TrimQuotedValue(std::wstring_view text) noexcept;
