// The variables of the nine options, which every room reads directly. Zero or null at load; the table's standard
// values, then the options file, then the dialog and the words of each conversion. They keep their values for as long
// as the library is loaded.
#pragma once
#include <cstdint>

#include "lib/import/lw/base/option_table.h"

extern int16_t lw_compute_normals;          // 1: smoothed normals for surfaces that ask for them
extern int16_t lw_make_surfnames_unique;    // 1: surfaces of one name stay apart
extern int16_t lw_import_keyframe0_only;    // 1: no animation
extern int16_t lw_print_statistics_var;     // 1: counters after a run
extern int16_t lw_print_warnings;           // 1: unknown chunks and detail polygons are told
extern float lw_smoothing_angle;            // degrees, for surfaces that give none
extern int16_t lw_output_debug_info;        // 1: the debug text file is written
extern int16_t lw_explode_obj_by_surf_name; // 1: an object of several surfaces becomes a mesh for each of them
extern char* lw_newtek_root_directory;      // of the content; owned, or null

extern int16_t lw_globals_initialized; // not 0: the standard values have been applied

// The variable of a flag; null for an option of another kind.
int16_t* lw_flag_variable(lw_option_number number);

// Applies the standard values, and sets lw_infile and lws_infile to null, the first time it is called.
void lw_init_import_variables();

// Frees the strings, when the library goes.
void lw_release_import_variables();
