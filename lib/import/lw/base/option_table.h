// The nine options, each once: the words that a conversion takes, the keys of the options file, the fields of the
// Options dialog and the standard values all come from this table. Data alone, with no variable behind it, so that a
// host can include it without linking the plug-in.
#pragma once
#include <cstddef>
#include <cstdint>
#include <string_view>

enum lw_option_kind : uint8_t {
    LW_OPTION_FLAG,      // 16 bits, 0 or 1; as an option word an integer
    LW_OPTION_ANGLE,     // a float in degrees; as an option word a text
    LW_OPTION_DIRECTORY, // a path; as an option word a text, in the options file between quotes
};

enum lw_option_number : uint8_t {
    LW_COMPUTE_NORMALS,
    LW_MAKE_SURFACE_NAMES_UNIQUE,
    LW_IMPORT_KEYFRAME0_ONLY,
    LW_PRINT_STATISTICS,
    LW_PRINT_WARNINGS,
    LW_SMOOTHING_ANGLE,
    LW_OUTPUT_DEBUG_INFO,
    LW_EXPLODE_OBJ_BY_SURF_NAMES,
    LW_NEWTEK_ROOT_DIRECTORY,
    LW_OPTION_COUNT
};

struct lw_option {
    lw_option_number number;
    lw_option_kind kind;
    const char* word;      // option word, and key of the options file
    int16_t control;       // of the Options dialog
    float standard;        // of a flag or an angle
    float lowest, highest; // what a user may choose; words and files are taken as they come
    const char* directory; // standard value of a directory, else null
    const char* help;      // for a list of options
};

// By lw_option_number, which is the order of the options file.
// clang-format off
inline constexpr lw_option lw_options[LW_OPTION_COUNT] = {
    {LW_COMPUTE_NORMALS, LW_OPTION_FLAG, "compute_normals", 100, 1, 0, 1, nullptr,
     "smoothed normals where surfaces ask for them"},
    {LW_MAKE_SURFACE_NAMES_UNIQUE, LW_OPTION_FLAG, "make_surface_names_unique", 107, 1, 0, 1, nullptr,
     "surfaces of one name stay apart as \"NAME #2\""},
    {LW_IMPORT_KEYFRAME0_ONLY, LW_OPTION_FLAG, "import_keyframe0_only", 110, 0, 0, 1, nullptr,
     "no animation"},
    {LW_PRINT_STATISTICS, LW_OPTION_FLAG, "print_statistics", 101, 1, 0, 1, nullptr,
     "counters behind a run"},
    {LW_PRINT_WARNINGS, LW_OPTION_FLAG, "print_warnings", 102, 0, 0, 1, nullptr,
     "tell of unknown chunks and detail polygons"},
    {LW_SMOOTHING_ANGLE, LW_OPTION_ANGLE, "smoothing_angle", 103, 89.5f, 0, 180, nullptr,
     "degrees, for surfaces that state none"},
    {LW_OUTPUT_DEBUG_INFO, LW_OPTION_FLAG, "output_debug_info", 105, 0, 0, 1, nullptr,
     "write what is parsed to debuglw.txt"},
    {LW_EXPLODE_OBJ_BY_SURF_NAMES, LW_OPTION_FLAG, "explode_obj_by_surf_names", 106, 1, 0, 1, nullptr,
     "a mesh for each surface of an object"},
    {LW_NEWTEK_ROOT_DIRECTORY, LW_OPTION_DIRECTORY, "newtek_root_directory", 108, 0, 0, 0, "c:\\",
     "the content directory, where none can be worked out"},
};
// clang-format on

static_assert([] {
    for (int i = 0; i < LW_OPTION_COUNT; ++i) {
        if (lw_options[i].number != i) return false;
    }
    return true;
}());

// The row of a word, letters as they stand; null for a word that is no option.
constexpr const lw_option* lw_find_option(std::string_view word)
{
    for (const lw_option& option : lw_options) {
        if (word == option.word) return &option;
    }
    return nullptr;
}

// The options file.
inline constexpr char lw_options_file_name[] = "imp_lw.ini"; // follows the plug-in's directory directly
inline constexpr char lw_options_file_head[] = "# Default options for the Lightwave geometry import converter.\n"
                                               "# !! Do not modify this file. It is written by the converter.\n"
                                               "[Preferences]\n";
inline constexpr std::size_t lw_options_line_size = 128; // a line with its line feed and an end; longer ones are cut
