// The working data of one object file's read.
#pragma once
#include <cstdint>

#include "lib/import/lw/lw2tv/surface_info.h"

struct LW_Surface_Name {
    char* name;        // owned; as in the file
    char* unique_name; // owned; the surface's name in the toolkit
};

// A table of names that a later SRFS replaced. poly_surface may point into it, so it lives to the end of the read.
struct lw_old_surface_names {
    LW_Surface_Name* names;
    int32_t count;
    lw_old_surface_names* next;
};

// Arrays are owned, and null until their chunk comes.
struct lw_object_data {
    char base_name[256];
    float* vertices; // x, y, z of each point, as in the file
    int32_t num_vertices;
    LW_Surface_Name* surface_names;
    int32_t num_surfaces, surface_capacity;
    int32_t* surface_order; // entries of surface_names sorted by name, equal ones in table order; null until needed
    LW_Surface_Info* surface_info; // one for each surface name
    char* surface_chunk_name;      // owned; of the SURF chunk being read
    lw_old_surface_names* old_surface_names;
    int32_t* face_indices;   // the file's index plus 1; 0 where the chunk ended before a polygon's last one
    int32_t* verts_per_poly; // each 3 or more
    char** poly_surface;     // unique_name of the polygon's surface; null: the one of the polygon before
    int32_t num_polygons, num_indices, index_capacity, poly_capacity;
    int16_t last_surface_number; // of the polygon before; -1 at the start of the read
};
