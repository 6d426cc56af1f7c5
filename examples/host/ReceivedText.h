#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>

// How the text in a WM_COPYDATA message is encoded. The message itself does not say it: host and
// caller agree on one encoding, or on a meaning of `dwData`.
enum class TextEncoding
{
    Utf16,
    Utf8,
    Ansi
};

const wchar_t* NameOf(TextEncoding encoding);

// The text in a message's bytes; nothing when they are no text of this encoding (half a code unit,
// a sequence that is not UTF-8). The bytes carry no terminator: their number alone says where the
// text ends.
std::optional<std::wstring> DecodeText(std::span<const std::byte> bytes, TextEncoding encoding);
