// String helpers. Blanks and letters are those of ASCII: names are Latin-1, and no locale takes part.
#include <algorithm>
#include <cstring>
#include <string_view>

#include "lib/services/import_io.h"
#include "lib/toolkit/vc4_tv.h"

namespace {

constexpr std::size_t name_limit = 255; // bytes, without the end

bool is_blank(char c)
{
    return c == ' ' || (c >= '\t' && c <= '\r');
}

} // namespace

void Import_IO_Copy_String(char** address, const char* text)
{
    if (!address) return;
    char* copy = nullptr;
    if (text) {
        const std::size_t size = std::strlen(text) + 1;
        copy = static_cast<char*>(Tv_Alloc_Memory(0, 0, size));
        if (copy) std::memcpy(copy, text, size);
    }
    Tv_Free_Memory(*address); // last: text may stand in it
    *address = copy;
}

int16_t Import_IO_Strip_Whitespace(char* text)
{
    if (!text) return 0;
    std::string_view rest(text);
    while (!rest.empty() && is_blank(rest.front())) rest.remove_prefix(1);
    while (!rest.empty() && is_blank(rest.back())) rest.remove_suffix(1);
    if (!rest.empty()) std::memmove(text, rest.data(), rest.size());
    text[rest.size()] = 0;
    return rest.empty() ? 0 : 1;
}

void Import_IO_String_To_Lower(const char* in, char* out)
{
    if (!in || !out) return;
    for (; *in; ++in, ++out) *out = static_cast<char>(*in >= 'A' && *in <= 'Z' ? *in + 32 : *in);
    *out = 0;
}

void Import_IO_ExtractBaseFileName(const char* path, char* base)
{
    if (!base) return;
    std::string_view name(path ? path : "");
    name.remove_prefix(std::min(name.find_last_of("/\\:") + 1, name.size())); // npos + 1 is 0
    const std::size_t dot = name.rfind('.');
    if (dot != std::string_view::npos && dot != 0) name = name.substr(0, dot);
    name = name.substr(0, name_limit);
    if (!name.empty()) std::memmove(base, name.data(), name.size());
    base[name.size()] = 0;
}
