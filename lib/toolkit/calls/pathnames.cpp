// Path names as text: nothing here looks at a disk.
#include <algorithm>
#include <cstring>

#include "lib/platform/text.h"
#include "lib/toolkit/vc4_tv.h"
#include "lib/toolkit/words/trace.h"

namespace {

struct ImageType {
    std::string_view extension;
    int32_t type;
};
constexpr ImageType image_types[] = {
    {"iff", 1}, {"tga", 2},  {"jpg", 3}, {"jpeg", 3}, {"png", 4}, {"bmp", 5},   {"gif", 6},
    {"tif", 7}, {"tiff", 7}, {"pcx", 8}, {"sgi", 9},  {"rgb", 9}, {"pict", 10}, {"pct", 10},
};

int32_t image_type(std::string_view name)
{
    const std::string_view extension = platform::extension_of(name);
    for (const ImageType& row : image_types)
        if (platform::equal_in_any_case(extension, row.extension)) return row.type;
    return 0;
}

} // namespace

extern "C" {

void Tv_Convert_Pathname(char* path)
{
    if (!path) return;
#if defined(_WIN32)
    std::replace(path, path + std::strlen(path), '/', '\\');
#else
    // A drive letter is the root here.
    if (platform::has_drive(path) && platform::is_separator(path[2]))
        std::memmove(path, path + 2, std::strlen(path + 2) + 1);
    std::replace(path, path + std::strlen(path), '\\', '/');
#endif
}

void Tv_ExtractBaseFileName(const char* path, char* base, int32_t)
{
    constexpr std::size_t base_size = 256; // with its end
    const std::string_view name = platform::last_element(path ? path : "").substr(0, base_size - 1);
    std::memmove(base, name.data(), name.size());
    base[name.size()] = 0;
}

int32_t Tv_Determine_Image_File_Type(const char* name, int32_t* type)
{
    const int32_t found = image_type(name ? name : "");
    if (type) *type = found;
    if (tv::trace_enabled()) {
        tv::trace_begin("Tv_Determine_Image_File_Type");
        tv::trace_string(name);
        tv::trace_integer(found);
        tv::trace_end();
    }
    return found;
}

int32_t Tv_RegisterClassStorage(uint32_t number, int32_t flag_a, int32_t flag_b)
{
    if (tv::trace_enabled()) {
        tv::trace_begin("Tv_RegisterClassStorage");
        tv::trace_integer(static_cast<int32_t>(number));
        tv::trace_integer(flag_a);
        tv::trace_integer(flag_b);
        tv::trace_end();
    }
    return 1;
}

} // extern "C"
