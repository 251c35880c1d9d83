// What a run has open and what it has counted so far.
#pragma once
#include <cstdint>
#include <cstdio>

// Null whenever they aren't open: whoever closes one sets it to null.
extern std::FILE* lw_infile;   // the object file, or a scene until it is recognised
extern std::FILE* lws_infile;  // the scene, in text mode
extern std::FILE* lw_debug_fp; // the debug text file

// Zeroed at the start of each run and kept until the next.
extern int32_t num_surfaces_read, num_vertices_read, num_v_indices_read, num_polygons_read, lw_object_count;

// Closes *stream, if it is open, and sets it to null.
void lw_close_stream(std::FILE** stream);
