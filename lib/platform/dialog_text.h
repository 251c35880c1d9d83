// Texts of dialogs are Latin-1; the system's names and the terminal are UTF-8. A name beyond Latin-1 passes through both
// ways byte for byte, so that it still names what it named.
#pragma once
#include <cstddef>
#include <string>
#include <string_view>

namespace platform {

inline bool is_continuation(std::string_view text, std::size_t at)
{
    return at < text.size() && (static_cast<unsigned char>(text[at]) & 0xc0) == 0x80;
}

inline std::string dialog_text(std::string_view utf8)
{
    std::string latin1;
    for (std::size_t i = 0; i < utf8.size(); ++i) {
        const auto lead = static_cast<unsigned char>(utf8[i]);
        if (lead < 0x80) {
            latin1 += utf8[i];
        } else if ((lead == 0xc2 || lead == 0xc3) && is_continuation(utf8, i + 1)) {
            latin1 += static_cast<char>(((lead & 3) << 6) | (static_cast<unsigned char>(utf8[++i]) & 0x3f));
        } else {
            return std::string(utf8);
        }
    }
    return latin1;
}

// True where every byte from 0x80 up belongs to a UTF-8 character, and one of them lies beyond Latin-1: as good as
// never so of a text that is meant as Latin-1.
inline bool is_beyond_latin1(std::string_view text)
{
    bool beyond = false;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const auto lead = static_cast<unsigned char>(text[i]);
        if (lead < 0x80) continue;
        const int more = lead >> 5 == 6 ? 1 : lead >> 4 == 14 ? 2 : lead >> 3 == 30 ? 3 : 0;
        if (more == 0) return false;
        beyond = beyond || lead > 0xc3;
        for (int k = 0; k < more; ++k) {
            if (!is_continuation(text, ++i)) return false;
        }
    }
    return beyond;
}

inline std::string terminal_text(std::string_view text)
{
    if (is_beyond_latin1(text)) return std::string(text);
    std::string utf8;
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte >= 0x80) {
            utf8 += static_cast<char>(0xc0 | (byte >> 6));
            utf8 += static_cast<char>(0x80 | (byte & 0x3f));
        } else { // a control character would move the cursor
            utf8 += byte < 0x20 || byte == 0x7f ? '?' : c;
        }
    }
    return utf8;
}

} // namespace platform
