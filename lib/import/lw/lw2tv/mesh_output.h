// One set of point and polygon arrays becomes an object in the toolkit and, unless the caller makes it itself, an
// instance of it.
#pragma once
#include <cstdint>

#include "lib/import/lw/lw2tv/surface_info.h"

// name                  wanted name of the object, also shown in progress texts
// verts_per_poly        corners of each polygon
// vertices              x, y, z of each point; Z is negated in place
// face_indices          point numbers from 1, polygon after polygon
// surface_name          of the whole mesh, where poly_surface is null; null itself when the file names no surface
// object_only_name_out  not null: stop when the object is complete, and write its name here
// surface_info          never null
// instance_name_out, object_name_out   null, or the names made
// parent_name           "world", or the name of an object
// poly_surface          null, or a name for each polygon; null entries take the one before, in place
// add_to_imported_list  not 0: the scene reader hears of the instance
// Names that go out are buffers of 256.
void LW_Output_Mesh(const char* name, int32_t num_polygons, int32_t num_vertices, int32_t* verts_per_poly,
                    float* vertices, int32_t* face_indices, const char* surface_name, char* object_only_name_out,
                    const LW_Surface_Info* surface_info, char* instance_name_out, char* object_name_out,
                    const char* parent_name, char** poly_surface, int16_t add_to_imported_list);
