#include "lib/platform/name_folding.h"

#include "lib/platform/latin1.h"

namespace platform {

static char32_t fold_character(char32_t c)
{
    if (c >= U'A' && c <= U'Z') return c + 32;
    if (c >= 0xC0 && c <= 0xDE && c != 0xD7) return c + 32; // 0xD7 is the multiplication sign
    if (c == 0x178) return 0xFF;                            // the one capital that lies outside Latin-1
    return c;
}

std::optional<std::u32string> folded_utf8_name(std::string_view name)
{
    std::optional<std::u32string> characters = decode_utf8(name);
    if (characters)
        for (char32_t& c : *characters) c = fold_character(c);
    return characters;
}

std::u32string folded_name(std::string_view latin1)
{
    std::u32string out;
    out.reserve(latin1.size());
    for (const char c : latin1) out.push_back(fold_character(static_cast<unsigned char>(c)));
    return out;
}

std::u32string folded_entry(std::string_view entry)
{
    std::optional<std::u32string> folded = folded_utf8_name(entry);
    return folded ? *std::move(folded) : folded_name(entry);
}

} // namespace platform
