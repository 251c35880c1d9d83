// The POLS chunk: polygons and their surface numbers.
#pragma once
#include <cstdint>

#include "lib/import/lw/lw2tv/object_data.h"

// Reads one polygon and its surface number from lw_infile; growing an array may end the run (level 5). 0 when the
// polygon was stored, 1 when it was dropped for having fewer than three corners. Never takes more than *chunk_remaining
// bytes: where these end within the polygon, its missing indices are 0, which no point has, and its surface is 1.
int16_t ReadPolygon(int32_t** face_indices, int32_t** verts_per_poly, char*** poly_surface, int32_t* index_capacity,
                    int32_t* poly_capacity, int32_t* num_indices, int32_t* num_polygons, int32_t* chunk_remaining,
                    int16_t* surface_number);

// Reads the chunk, in place of what an earlier one gave. `filename` is for messages. False when the file ended first.
bool lw_read_polygons(lw_object_data* object, int32_t chunk_size, const char* filename);
