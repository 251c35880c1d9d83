#include "lib/import/lw/base/path_mapping.h"

#include <cstring>

#include "lib/platform/text.h"
#include "lib/services/import_io.h"

// The text after the separator or ":" that `depth` others follow; the whole when there are fewer.
static const char* cut(const char* text, std::size_t length, int16_t depth)
{
    int32_t number = 0;
    for (std::size_t i = length; i-- > 0;) {
        if (!platform::is_separator(text[i]) && text[i] != ':') continue;
        if (number == depth) return text + i + 1;
        ++number;
    }
    return text;
}

static void map_extension(char* last_four, int16_t is_image)
{
    struct Extension {
        const char* text;
        bool images_only;
    };
    static const Extension mapped[] = {{".map", false}, {".lwo", true},  {".col", false},
                                       {".brs", false}, {".lbm", false}, {".ham", false}};
    for (const Extension& extension : mapped) {
        if (std::memcmp(last_four, extension.text, 4) != 0) continue;
        if (is_image || !extension.images_only) std::memcpy(last_four, ".iff", 4);
        return;
    }
}

int16_t convert_lw_filename(char** name, int16_t depth, int16_t is_image)
{
    char* const text = *name;
    if (!text || !*text) return 0;
    std::size_t length = std::strlen(text);
    int16_t separators = 0;
    for (std::size_t i = length; i-- > 1;) {
        if (platform::is_separator(text[i]) && text[i - 1] != ':' && separators < INT16_MAX) ++separators;
    }
    if (separators < depth) depth = separators;
    // In place: what is kept is never longer, and a copy could fail for want of memory.
    const char* const kept = cut(text, length, depth);
    length -= static_cast<std::size_t>(kept - text);
    std::memmove(text, kept, length + 1);
    Import_IO_String_To_Lower(text, text);
    if (length >= 4) map_extension(text + length - 4, is_image);
    return separators;
}
