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

} // namespace tv
