#pragma once

#include <optional>
#include <string>
#include <string_view>

// The text that `encoded` carries as base64url (letters, digits, "-" and "_", without padding) of
// its UTF-8 bytes; nothing when it is no base64url or its bytes are no UTF-8. Of the encodings that
// give the same bytes only the canonical one is taken.
//
// In this form any text passes every rule of the command line and of links. The message does not
// say that it was used: host and caller agree on it, or on a meaning of `dwData`.
std::optional<std::wstring> DecodeBase64Url(std::wstring_view encoded);
