// One conversion: option words, streams, the frame of the run with its fatal exit, and the statistics.
#pragma once
#include <cstdint>
#include <cstdio>

#include "lib/import/lw/base/bounded_text.h"
#include "lib/services/import_io.h"

// Streams of the run, null whenever they aren't open: whoever closes one sets it to null.
extern std::FILE* lw_infile;   // the object file, or a scene until it is recognised
extern std::FILE* lws_infile;  // the scene, in text mode
extern std::FILE* lw_debug_fp; // the debug text file

// Statistics, zeroed at the start of each run and kept until the next.
extern int32_t num_surfaces_read, num_vertices_read, num_v_indices_read, num_polygons_read, lw_object_count;

// True while lines for the debug file are wanted.
bool lw_debug_is_on();

// Writes to the debug file, if it is wanted.
void lw_debug_printf(const char* format, ...) LW_PRINTF(1, 2);

// Formats into a buffer of 256 and reports, at level 3 or 4.
void lw_report(int32_t level, const char* format, ...) LW_PRINTF(2, 3);

// A level 5 report, which ends the run by its non-local exit. Only from inside a run.
[[noreturn]] void lw_report_fatal(const char* message);

// names and values: the entry point's lists behind the command, up to the first null in names.
void ImportConverter_Lightwave(char** names, void** values, int32_t* result, void* reserved);

// 1: a Lightwave scene or object file. -1: it can't be opened, or there is no memory. -2: neither.
int16_t lw_auto_detect_filetype(const char* file_name);

// The run itself, with lw_infile open at its first byte. file_name is lower-cased in place. 0 success, 1 failure.
int16_t lw_convert_lw_file(char* file_name);

void LW_Error_Handler(Import_IO_Error_Record* record);
void lw_print_statistics();
