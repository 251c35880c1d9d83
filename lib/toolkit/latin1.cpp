#include "lib/toolkit/latin1.h"

namespace tv {

std::string latin1_to_utf8(std::string_view latin1)
{
    std::string utf8;
    utf8.reserve(latin1.size());
    for (const char c : latin1) append_utf8(utf8, c);
    return utf8;
}

std::string utf8_to_latin1(std::string_view utf8)
{
    std::string latin1;
    latin1.reserve(utf8.size());
    for (std::size_t i = 0; i < utf8.size(); ++i) {
        const auto byte = static_cast<unsigned char>(utf8[i]);
        if (byte < 0x80) {
            latin1 += utf8[i];
            continue;
        }
        // U+0080 to U+00FF are two bytes, of which the first is C2 or C3.
        if ((byte != 0xC2 && byte != 0xC3) || i + 1 == utf8.size()) return std::string(utf8);
        const auto next = static_cast<unsigned char>(utf8[++i]);
        if ((next & 0xC0) != 0x80) return std::string(utf8);
        latin1 += static_cast<char>((byte & 0x03) << 6 | (next & 0x3F));
    }
    return latin1;
}

// The length of the character at the front, or 0 where there is none; overlong forms and surrogates are none.
static std::size_t character_length(std::string_view text)
{
    const auto byte = [text](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    const unsigned lead = byte(0);
    const std::size_t length = lead < 0x80 ? 1 : lead >> 5 == 6 ? 2 : lead >> 4 == 14 ? 3 : lead >> 3 == 30 ? 4 : 0;
    if (length > text.size()) return 0;
    for (std::size_t i = 1; i < length; ++i)
        if (byte(i) >> 6 != 2) return 0;
    const bool bad = (length == 2 && lead < 0xC2) || (lead == 0xE0 && byte(1) < 0xA0) ||
                     (lead == 0xED && byte(1) > 0x9F) || (lead == 0xF0 && byte(1) < 0x90) ||
                     (lead == 0xF4 && byte(1) > 0x8F) || lead > 0xF4;
    return bad ? 0 : length;
}

std::string shown_name(std::string_view name)
{
    for (std::string_view rest = name; !rest.empty();) {
        const std::size_t length = character_length(rest);
        if (length == 0) return latin1_to_utf8(name);
        rest.remove_prefix(length);
    }
    return std::string(name);
}

} // namespace tv
