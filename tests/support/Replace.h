#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <type_traits>

/// Puts `to` in the place of every `from`.
template <typename Unit>
void Replace(std::basic_string<Unit>& text, std::type_identity_t<std::basic_string_view<Unit>> from,
             std::type_identity_t<std::basic_string_view<Unit>> to)
{
    for (std::size_t at = text.find(from); at != text.npos; at = text.find(from, at + to.size()))
    {
        text.replace(at, from.size(), to);
    }
}
