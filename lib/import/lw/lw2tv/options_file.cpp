#include "lib/import/lw/lw2tv/options_file.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "lib/import/lw/base/bounded_text.h"
#include "lib/import/lw/base/option_variables.h"
#include "lib/platform/files.h"
#include "lib/services/import_io.h"
#include "lib/toolkit/vc4_tv.h"

struct Integer_Option {
    const char* key;
    int16_t* variable;
};

static const char* const smoothing_angle_key = "smoothing_angle";
static const char* const newtek_root_directory_key = "newtek_root_directory";

// In the order of the file; the smoothing angle stands behind the first five.
static const Integer_Option integer_options[] = {
    {"compute_normals", &lw_compute_normals},
    {"make_surface_names_unique", &lw_make_surfnames_unique},
    {"import_keyframe0_only", &lw_import_keyframe0_only},
    {"print_statistics", &lw_print_statistics_var},
    {"print_warnings", &lw_print_warnings},
    {"output_debug_info", &lw_output_debug_info},
    {"explode_obj_by_surf_names", &lw_explode_obj_by_surf_name},
};
static const int options_before_angle = 5;

static const int text_size = 128;

// The next key and value. False at the end of the file, and at a line that has a key alone: it hides what follows.
static bool next_option(std::FILE* fp, char key[text_size], char value[text_size])
{
    char line[text_size];
    while (std::fgets(line, sizeof line, fp)) {
        if (Import_IO_Strip_Whitespace(line) == 0) continue;
        if (line[0] == '#' || line[0] == '[' || std::strlen(line) < 2) continue;
        const char* const left = std::strtok(line, "=");
        const char* const right = left ? std::strtok(nullptr, "\n\r") : nullptr;
        if (!right) return false;
        lw_copy_text(key, text_size, left);
        lw_copy_text(value, text_size, right);
        return Import_IO_Strip_Whitespace(key) != 0 && Import_IO_Strip_Whitespace(value) != 0;
    }
    return false;
}

static void store_root_directory(char* value)
{
    char* const text = value[0] == '"' ? value + 1 : value;
    const std::size_t length = std::strlen(text);
    if (length && text[length - 1] == '"') text[length - 1] = '\0';
    if (*text) {
        Import_IO_Copy_String(&lw_newtek_root_directory, text);
    } else {
        Tv_Free_Memory(lw_newtek_root_directory);
        lw_newtek_root_directory = nullptr;
    }
}

static void store_option(const char* key, char* value)
{
    for (const Integer_Option& option : integer_options) {
        if (std::strcmp(key, option.key) == 0) *option.variable = static_cast<int16_t>(std::atoi(value));
    }
    if (std::strcmp(key, smoothing_angle_key) == 0) lw_smoothing_angle = static_cast<float>(std::atof(value));
    if (std::strcmp(key, newtek_root_directory_key) == 0) store_root_directory(value);
}

int16_t RestoreImportConvertOptions_Lightwave(char* path)
{
    Tv_Convert_Pathname(path);
    std::FILE* const fp = platform::open_file(path, "r");
    if (!fp) return 1;
    char key[text_size], value[text_size];
    while (next_option(fp, key, value)) store_option(key, value);
    std::fclose(fp);
    return 0;
}

static void write_options(std::FILE* fp)
{
    std::fputs("# Default options for the Lightwave geometry import converter.\n"
               "# !! Do not modify this file. It is written by the converter.\n"
               "[Preferences]\n",
               fp);
    int written = 0;
    for (const Integer_Option& option : integer_options) {
        if (written++ == options_before_angle) {
            std::fprintf(fp, "%s = %g\n", smoothing_angle_key, static_cast<double>(lw_smoothing_angle));
        }
        std::fprintf(fp, "%s = %d\n", option.key, *option.variable);
    }
    std::fprintf(fp, "%s = \"%s\"\n", newtek_root_directory_key,
                 lw_newtek_root_directory ? lw_newtek_root_directory : "");
}

int16_t SaveImportConvertOptions_Lightwave(char* path)
{
    Tv_Convert_Pathname(path);
    std::FILE* const fp = platform::open_file(path, "w");
    bool written = false;
    if (fp) {
        write_options(fp);
        written = std::fflush(fp) == 0 && !std::ferror(fp);
        std::fclose(fp);
    }
    if (written) return 0;
    Tv_Report_Error(4, "OUTERR_FILE_OPEN_WRITE", "SaveImportConvertOptions_Lightwave()", "Lightwave .INI", path,
                    static_cast<const char*>(nullptr));
    return 1;
}
