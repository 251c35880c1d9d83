// String helpers. Blanks and letters are those of ASCII: names are Latin-1, and no locale takes part.
#include <cstring>
#include <string_view>

#include "lib/platform/text.h"
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
    for (; *in; ++in, ++out) *out = platform::lower_case(*in);
    *out = 0;
}

void Import_IO_ExtractBaseFileName(const char* path, char* base)
{
    if (!base) return;
    const std::string_view whole = platform::without_extension(platform::last_element(path ? path : ""));
    const std::string_view name = whole.substr(0, name_limit);
    if (!name.empty()) std::memmove(base, name.data(), name.size());
    base[name.size()] = 0;
}
