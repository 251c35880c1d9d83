#include "lib/import/lw/base/option_variables.h"

#include "lib/import/lw/base/run_state.h"
#include "lib/services/import_io.h"
#include "lib/toolkit/vc4_tv.h"

int16_t lw_compute_normals = 0;
int16_t lw_make_surfnames_unique = 0;
int16_t lw_import_keyframe0_only = 0;
int16_t lw_print_statistics_var = 0;
int16_t lw_print_warnings = 0;
float lw_smoothing_angle = 0;
int16_t lw_output_debug_info = 0;
int16_t lw_explode_obj_by_surf_name = 0;
char* lw_newtek_root_directory = nullptr;
int16_t lw_globals_initialized = 0;

int16_t* lw_flag_variable(lw_option_number number)
{
    switch (number) {
    case LW_COMPUTE_NORMALS: return &lw_compute_normals;
    case LW_MAKE_SURFACE_NAMES_UNIQUE: return &lw_make_surfnames_unique;
    case LW_IMPORT_KEYFRAME0_ONLY: return &lw_import_keyframe0_only;
    case LW_PRINT_STATISTICS: return &lw_print_statistics_var;
    case LW_PRINT_WARNINGS: return &lw_print_warnings;
    case LW_OUTPUT_DEBUG_INFO: return &lw_output_debug_info;
    case LW_EXPLODE_OBJ_BY_SURF_NAMES: return &lw_explode_obj_by_surf_name;
    default: return nullptr;
    }
}

void lw_init_import_variables()
{
    if (lw_globals_initialized) return;
    lw_globals_initialized = 1;
    lw_infile = nullptr;
    lws_infile = nullptr;
    for (const lw_option& option : lw_options) {
        if (int16_t* const flag = lw_flag_variable(option.number)) *flag = static_cast<int16_t>(option.standard);
    }
    lw_smoothing_angle = lw_options[LW_SMOOTHING_ANGLE].standard;
    Import_IO_Copy_String(&lw_newtek_root_directory, lw_options[LW_NEWTEK_ROOT_DIRECTORY].directory);
}

void lw_release_import_variables()
{
    Tv_Free_Memory(lw_newtek_root_directory);
    lw_newtek_root_directory = nullptr;
    lw_globals_initialized = 0;
}
