// Stored paths, as they were on the machine that wrote them, become local names: cut down to the last elements,
// lower-cased, image extensions folded into one. Strings alone; no file is touched.
#pragma once
#include <cstdint>

// *name is a string of Import_IO_Copy_String, and is changed in place. `depth`: how many elements to keep in front of
// the last one. is_image: 1 also maps ".lwo", which an object's own path keeps. Gives the number of separators that the
// name had: slashes and backslashes, but neither a leading one nor one after a ":". 0 for a null or empty name.
int16_t convert_lw_filename(char** name, int16_t depth, int16_t is_image);
