#include "lib/platform/latin1.h"

#include <algorithm>

namespace platform {

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

std::string shown_name(std::string_view name)
{
    return decode_utf8(name) ? std::string(name) : latin1_to_utf8(name);
}

bool is_beyond_latin1(std::string_view text)
{
    const std::optional<std::u32string> characters = decode_utf8(text);
    return characters && std::any_of(characters->begin(), characters->end(), [](char32_t c) { return c > 0xFF; });
}

std::optional<std::u32string> decode_utf8(std::string_view text)
{
    std::u32string out;
    for (std::size_t i = 0; i < text.size();) {
        const auto lead = static_cast<unsigned char>(text[i]);
        const std::size_t length = lead < 0x80 ? 1 : lead >> 5 == 6 ? 2 : lead >> 4 == 14 ? 3 : lead >> 3 == 30 ? 4 : 0;
        if (length == 0 || length > text.size() - i) return std::nullopt;
        char32_t c = length == 1 ? lead : lead & (0x7Fu >> length);
        for (std::size_t k = 1; k < length; ++k) {
            const auto next = static_cast<unsigned char>(text[i + k]);
            if (next >> 6 != 2) return std::nullopt;
            c = c << 6 | (next & 0x3Fu);
        }
        constexpr char32_t smallest[] = {0, 0, 0x80, 0x800, 0x10000};
        if (c < smallest[length] || c > 0x10FFFF || (c >= 0xD800 && c <= 0xDFFF)) return std::nullopt;
        out.push_back(c);
        i += length;
    }
    return out;
}

} // namespace platform
