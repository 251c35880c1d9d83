#include "lib/import/lw/lw2tv/options_file.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "lib/import/lw/base/bounded_text.h"
#include "lib/import/lw/base/option_variables.h"
#include "lib/import/lw/base/report.h"
#include "lib/platform/files.h"
#include "lib/services/import_io.h"
#include "lib/toolkit/vc4_tv.h"

// The next key and value. False at the end of the file, and at a line that has a key alone: it hides what follows.
static bool next_option(std::FILE* fp, char key[lw_options_line_size], char value[lw_options_line_size])
{
    char line[lw_options_line_size];
    while (std::fgets(line, sizeof line, fp)) {
        if (Import_IO_Strip_Whitespace(line) == 0) continue;
        if (line[0] == '#' || line[0] == '[' || std::strlen(line) < 2) continue;
        const char* const left = std::strtok(line, "=");
        const char* const right = left ? std::strtok(nullptr, "\n\r") : nullptr;
        if (!right) return false;
        lw_copy_text(key, lw_options_line_size, left);
        lw_copy_text(value, lw_options_line_size, right);
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
    const lw_option* const option = lw_find_option(key);
    if (!option) return;
    switch (option->kind) {
    case LW_OPTION_FLAG: *lw_flag_variable(option->number) = static_cast<int16_t>(std::atoi(value)); break;
    case LW_OPTION_ANGLE: lw_smoothing_angle = static_cast<float>(std::atof(value)); break;
    case LW_OPTION_DIRECTORY: store_root_directory(value); break;
    }
}

int16_t RestoreImportConvertOptions_Lightwave(char* path)
{
    Tv_Convert_Pathname(path);
    std::FILE* const fp = platform::open_file(path, "r");
    if (!fp) return 1;
    char key[lw_options_line_size], value[lw_options_line_size];
    while (next_option(fp, key, value)) store_option(key, value);
    std::fclose(fp);
    return 0;
}

static void write_options(std::FILE* fp)
{
    std::fputs(lw_options_file_head, fp);
    for (const lw_option& option : lw_options) {
        std::fprintf(fp, "%s = ", option.word);
        switch (option.kind) {
        case LW_OPTION_FLAG: std::fprintf(fp, "%d\n", *lw_flag_variable(option.number)); break;
        case LW_OPTION_ANGLE: std::fprintf(fp, "%g\n", static_cast<double>(lw_smoothing_angle)); break;
        case LW_OPTION_DIRECTORY:
            std::fprintf(fp, "\"%s\"\n", lw_newtek_root_directory ? lw_newtek_root_directory : "");
            break;
        }
    }
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
    Tv_Report_Error(LW_ERROR, "OUTERR_FILE_OPEN_WRITE", "SaveImportConvertOptions_Lightwave()", "Lightwave .INI", path,
                    static_cast<const char*>(nullptr));
    return 1;
}
