#include "lib/import/lw/lw2tv/conversion_run.h"

#include <csetjmp>
#include <cstdlib>
#include <cstring>

#include "lib/import/lw/base/option_variables.h"
#include "lib/import/lw/base/report.h"
#include "lib/import/lw/base/run_state.h"
#include "lib/import/lw/base/tokens.h"
#include "lib/import/lw/lw2tv/binary_input.h"
#include "lib/import/lw/lw2tv/object_reader.h"
#include "lib/import/lw/lws/scene_reader.h"
#include "lib/platform/files.h"
#include "lib/toolkit/vc4_tv.h"

int16_t lw_auto_detect_filetype(const char* file_name)
{
    lw_infile = file_name ? platform::open_file(file_name, "rb") : nullptr;
    if (!lw_infile) return -1;
    if (lw_reset_file_read_buffer() != 0) {
        lw_close_stream(&lw_infile);
        return -1;
    }
    char id[5];
    LW_GET_ID(lw_infile, id);
    bool recognised = std::strcmp(id, "LWSC") == 0;
    if (std::strcmp(id, "FORM") == 0 && LW_GET_U4(lw_infile) != 0) {
        LW_GET_ID(lw_infile, id);
        recognised = std::strcmp(id, "LWOB") == 0;
    }
    lw_close_stream(&lw_infile);
    lw_free_file_read_buffer();
    return recognised ? 1 : -2;
}

static int16_t convert_scene(char* file_name)
{
    lw_free_file_read_buffer();
    lw_close_stream(&lw_infile);
    lws_infile = platform::open_file(file_name, "r");
    if (!lws_infile) {
        lw_report(LW_ERROR, "Could not open file '%s' for reading.", file_name);
        return 1;
    }
    const bool read = LW_Read_Scene_File(lws_infile, file_name) != 0;
    lw_close_stream(&lws_infile);
    return read ? 0 : 1;
}

static int16_t convert_recognised_file(char* file_name)
{
    num_surfaces_read = num_vertices_read = num_v_indices_read = num_polygons_read = lw_object_count = 0;
    if (lw_reset_file_read_buffer() != 0) return 1;
    char id[5];
    LW_GET_ID(lw_infile, id);
    if (std::strcmp(id, "LWSC") == 0) return convert_scene(file_name);
    if (std::strcmp(id, "FORM") != 0) {
        lw_report(LW_ERROR, "File '%s' is not in the IFF format.", file_name);
        return 1;
    }
    return read_LWOB(lw_infile, file_name, 0, nullptr, nullptr, "world", 0) == 0 ? 0 : 1;
}

// What the readers held when a fatal error left them. After any other end there is nothing to do.
static void release_what_readers_left()
{
    lws_release_scene();
    lw_release_object_data();
}

int16_t lw_convert_lw_file(char* file_name)
{
    lw_look_up_tokens();
    Tv_RegisterClassStorage(0xCAB3FFA8u, 0, 0);
    Import_IO_String_To_Lower(file_name, file_name);
    Import_IO_Initialize(file_name, LW_Error_Handler);
    Import_IO_Display_Info_Text("Reading Lightwave Geometry Data");
    if (setjmp(jump_buffer) == 0) {
        if (convert_recognised_file(file_name) == 0) {
            Import_IO_Cleanup();
            return 0;
        }
    } else { // a level 5 report came
        lw_close_stream(&lw_debug_fp);
        Import_IO_Abort_Cleanup();
        release_what_readers_left();
    }
    Import_IO_Cleanup();
    lw_free_file_read_buffer();
    return 1;
}

void lw_print_statistics()
{
    Import_IO_printf("\n");
    Import_IO_printf("Lightwave import parsing statistics:\n");
    Import_IO_printf("\tPolygons            = %ld\n", static_cast<long>(num_polygons_read));
    Import_IO_printf("\tVertex coordinates  = %ld\n", static_cast<long>(num_vertices_read));
    Import_IO_printf("\tVertex indices      = %ld\n", static_cast<long>(num_v_indices_read));
    Import_IO_printf("\tSurface definitions = %ld\n", static_cast<long>(num_surfaces_read));
}

static void open_debug_file()
{
    lw_debug_fp = nullptr;
    if (!lw_output_debug_info) return;
    const char* directory = nullptr;
    Tv_Inquire_Environment("TV_WORKING_DIR", &directory);
    const bool known = directory && *directory;
    char path[lw_path_size];
    const std::size_t length =
        lw_format_text(path, sizeof path, "%s%sdebuglw.txt", known ? directory : "", known ? "\\" : "");
    if (length < sizeof path) lw_debug_fp = platform::open_file(path, "w");
    if (!lw_debug_fp) lw_report(LW_WARNING, "Could not open output debug file '%s' for writing.", path);
}

static void take_option_word(const char* word, void* value)
{
    const lw_option* const option = lw_find_option(word);
    if (!option) {
        Tv_Report_Error(LW_ERROR, "ERR_GEOM_IMPORT_BAD_TOKEN", "ImportConverter_Lightwave()", word,
                        static_cast<const char*>(nullptr));
        return;
    }
    char* const text = static_cast<char*>(value); // of a flag an integer
    switch (option->kind) {
    case LW_OPTION_FLAG:
        *lw_flag_variable(option->number) = static_cast<int16_t>(reinterpret_cast<intptr_t>(value)); // the low 16 bits
        break;
    case LW_OPTION_ANGLE:
        if (text) lw_smoothing_angle = static_cast<float>(std::atof(text));
        break;
    case LW_OPTION_DIRECTORY:
        if (text && *text && Import_IO_Strip_Whitespace(text) != 0) {
            Import_IO_Copy_String(&lw_newtek_root_directory, text);
        }
        break;
    }
}

void ImportConverter_Lightwave(char** names, void** values, int32_t* result, void* /*reserved*/)
{
    lw_init_import_variables();
    char* file_name = nullptr;
    for (; *names; ++names, values = values ? values + 1 : nullptr) {
        void* const value = values ? *values : nullptr;
        if (std::strcmp(*names, "validate_header_2") == 0) {
            *result = lw_auto_detect_filetype(static_cast<const char*>(value));
            return;
        }
        if (std::strcmp(*names, "filename") == 0) {
            file_name = static_cast<char*>(value);
        } else {
            take_option_word(*names, value);
        }
    }

    lw_infile = file_name ? platform::open_file(file_name, "rb") : nullptr;
    if (!lw_infile) {
        Tv_Report_Error(LW_ERROR, "ERR_FILE_OPEN_READ", "ImportConverter_Lightwave()", "Lightwave",
                        file_name ? file_name : "", static_cast<const char*>(nullptr));
        *result = 1;
        return;
    }
    open_debug_file();
    *result = lw_convert_lw_file(file_name);
    if (*result == 0 && lw_print_statistics_var) lw_print_statistics();
    lw_close_stream(&lw_debug_fp);
    lw_close_stream(&lw_infile);
    lw_close_stream(&lws_infile);
}
