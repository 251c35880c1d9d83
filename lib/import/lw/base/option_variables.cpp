#include "lib/import/lw/base/option_variables.h"

#include "lib/import/lw/lw2tv/conversion_run.h"
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

void lw_init_import_variables()
{
    if (lw_globals_initialized) return;
    lw_globals_initialized = 1;
    lw_infile = nullptr;
    lws_infile = nullptr;
    lw_compute_normals = 1;
    lw_make_surfnames_unique = 1;
    lw_import_keyframe0_only = 0;
    lw_print_statistics_var = 1;
    lw_print_warnings = 0;
    lw_smoothing_angle = 89.5f;
    lw_output_debug_info = 0;
    lw_explode_obj_by_surf_name = 1;
    Import_IO_Copy_String(&lw_newtek_root_directory, "c:\\");
}

void lw_release_import_variables()
{
    Tv_Free_Memory(lw_newtek_root_directory);
    lw_newtek_root_directory = nullptr;
    lw_globals_initialized = 0;
}
