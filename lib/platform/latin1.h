// Names are Latin-1 inside and UTF-8 outside. A name beyond Latin-1 passes through byte for byte, so that it still names
// what it named.
#pragma once
#include <optional>
#include <string>
#include <string_view>

#include "lib/platform/files.h"

namespace platform {

// One Latin-1 character as one or two bytes of UTF-8.
inline void append_utf8(std::string& out, char latin1)
{
    const auto byte = static_cast<unsigned char>(latin1);
    if (byte < 0x80) {
        out += latin1;
    } else {
        out += static_cast<char>(0xC0 | byte >> 6);
        out += static_cast<char>(0x80 | (byte & 0x3F));
    }
}

PLATFORM_API std::string latin1_to_utf8(std::string_view latin1); // total: every byte is a character
// What isn't valid UTF-8, or has characters beyond Latin-1, comes back byte for byte.
PLATFORM_API std::string utf8_to_latin1(std::string_view utf8);
// A name of the system's, for people: UTF-8 as it stands, what is none read as Latin-1.
PLATFORM_API std::string shown_name(std::string_view name);
// True of valid UTF-8 with characters beyond Latin-1: as good as never so of a text that is meant as Latin-1.
PLATFORM_API bool is_beyond_latin1(std::string_view text);

// The text's characters, or nothing where it isn't UTF-8: overlong forms and surrogates are none.
PLATFORM_API std::optional<std::u32string> decode_utf8(std::string_view text);

} // namespace platform
