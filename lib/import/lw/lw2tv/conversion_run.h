// One conversion: option words, the frame of the run, the file test and the statistics.
#pragma once
#include <cstdint>

// names and values: the entry point's lists after the command, up to the first null in names.
void ImportConverter_Lightwave(char** names, void** values, int32_t* result, void* reserved);

// 1: a Lightwave scene or object file. -1: it can't be opened, or there is no memory. -2: neither.
int16_t lw_auto_detect_filetype(const char* file_name);

// The run itself, with lw_infile open at its first byte. file_name is lower-cased in place. 0 success, 1 failure.
int16_t lw_convert_lw_file(char* file_name);

// The counters of the run that ended last.
void lw_print_statistics();
