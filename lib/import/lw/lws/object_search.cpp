#include "lib/import/lw/lws/object_search.h"

#include <cstring>

#include "lib/import/lw/base/bounded_text.h"
#include "lib/import/lw/base/option_variables.h"
#include "lib/import/lw/base/path_mapping.h"
#include "lib/import/lw/base/report.h"
#include "lib/platform/files.h"
#include "lib/platform/text.h"
#include "lib/toolkit/vc4_tv.h"

// The path is the three pieces joined. Null when it doesn't fit, or when there is no such file.
static std::FILE* open_path(const char* first, const char* second, const char* third)
{
    char path[lw_path_size];
    if (lw_format_text(path, sizeof path, "%s%s%s", first, second, third) >= sizeof path) return nullptr;
    return platform::open_file(path, "rb");
}

// The last elements of the path, from one of them to as many as it has separators.
static std::FILE* open_by_last_elements(const char* stored_path, int16_t tries, char** candidate)
{
    for (int16_t depth = 0; depth < tries; ++depth) {
        Import_IO_Copy_String(candidate, stored_path);
        if (!*candidate) lw_report_fatal("Out of memory while copying an object's name");
        convert_lw_filename(candidate, depth, 0);
        std::FILE* const file = open_path(*candidate, "", "");
        if (file) return file;
    }
    return nullptr;
}

static std::FILE* open_below_content_directory(const char* stored_path)
{
    const char* const root = lw_newtek_root_directory;
    if (!root || !*root) return nullptr;
    const char* const separator = platform::is_separator(root[std::strlen(root) - 1]) ? "" : "\\";
    if (std::FILE* const file = open_path(root, separator, stored_path)) return file;
    char base[lw_name_size];
    Tv_ExtractBaseFileName(stored_path, base, 0);
    return open_path(root, separator, base);
}

static std::FILE* open_by_search_path(const char* stored_path)
{
    const char* const name = platform::last_element(stored_path).data(); // ends where the path does
    char found_path[lw_path_size] = "";
    void* const handle = Tv_Search_And_Open_File(name, "r", 0, "TV_SEARCHPATH_DEFAULT", found_path);
    if (!handle) return nullptr;
    Tv_Fclose_File(handle);
    return platform::open_file(found_path, "rb");
}

std::FILE* lw_open_object_file(const char* stored_path, int16_t tries, char** candidate)
{
    const char* const path = stored_path;
    const bool leading_separator = platform::is_separator(path[0]);
    const bool drive = !leading_separator && path[0] && path[1] == ':';
    const bool relative = !leading_separator && !drive;
    std::FILE* file = open_by_last_elements(path, tries, candidate);
    if (!file && relative) file = open_below_content_directory(path);
    if (!file && relative) file = open_path("\\", path, "");
    if (!file && drive) file = open_path("\\", path + (platform::is_separator(path[2]) ? 3 : 2), "");
    if (!file) file = open_by_search_path(path);
    return file;
}
