#include "lib/import/lw/lw2tv/mesh_output.h"

#include <cstring>

#include "lib/import/lw/base/bounded_text.h"
#include "lib/import/lw/base/imported_instances.h"
#include "lib/import/lw/base/option_variables.h"
#include "lib/import/lw/base/report.h"
#include "lib/import/lw/base/run_state.h"
#include "lib/import/lw/base/tokens.h"
#include "lib/import/lw/lw2tv/texture_projection.h"
#include "lib/toolkit/vc4_tv.h"

// Each null entry from the second on takes the value of the entry before it.
static void fill_forward(char** poly_surface, int32_t num_polygons)
{
    for (int32_t i = 1; i < num_polygons; ++i) {
        if (!poly_surface[i]) poly_surface[i] = poly_surface[i - 1];
    }
}

static void make_smoothed_normals(const char* name, const char* object_name, float angle)
{
    char text[256];
    lw_format_text(text, sizeof text, "Creating smoothed vertex normals for object: %s", name);
    Import_IO_Display_Info_Text(text);
    Tv_Manipulate_IndexedPolygons(object_name, 0, lw_tokens.calcnormals, lw_tokens.angle, &angle, 0);
}

void LW_Output_Mesh(const char* name, int32_t num_polygons, int32_t num_vertices, int32_t* verts_per_poly,
                    float* vertices, int32_t* face_indices, const char* surface_name, char* object_only_name_out,
                    const LW_Surface_Info* surface_info, char* instance_name_out, char* object_name_out,
                    const char* parent_name, char** poly_surface, int16_t add_to_imported_list)
{
    lw_debug_printf("Outputting mesh for object: '%s'.\n", name);
    char object_name[lw_name_size];
    Import_IO_MakeNameUnique(lw_tokens.object, name, object_name);
    if (poly_surface) fill_forward(poly_surface, num_polygons);
    ++lw_object_count;
    for (int32_t i = 0; i < num_vertices; ++i) {
        float* const z = vertices + std::size_t{3} * static_cast<std::size_t>(i) + 2;
        *z = -*z;
    }

    int32_t index_offset = 0;
    Tv_Object_Define(object_name, 0);
    Tv_Primitive(lw_tokens.indexedpolygons,                                  //
                 lw_tokens.numpolygons, &num_polygons, 1,                    //
                 lw_tokens.verticesperpoly, verts_per_poly, 1,               //
                 lw_tokens.indiceoffset, &index_offset, 1,                   //
                 lw_tokens.clockwise, lw_tokens.enabled, lw_tokens.on, 1,    //
                 lw_tokens.vertex, &num_vertices, vertices, face_indices, 1, //
                 lw_tokens.surfacelink, poly_surface, 1,                     //
                 0);
    Tv_Object_End(0);
    if (lw_compute_normals && surface_info->smoothing_flag) {
        make_smoothed_normals(name, object_name, surface_info->smoothing_angle);
    }
    if (!poly_surface && surface_name) {
        Tv_Surfacelink(lw_tokens.surface, surface_name, lw_tokens.object, object_name, 0);
    }
    if (object_only_name_out) {
        lw_copy_text(object_only_name_out, lw_name_size, object_name);
        return;
    }

    char instance_name[lw_name_size];
    const bool under_world = std::strcmp(parent_name, "world") == 0;
    Import_IO_Attach_Object_To_World(name, object_name, instance_name,
                                     under_world ? lw_tokens.instance : lw_tokens.object, parent_name);
    if (under_world) Import_IO_Set_Root_Imported_Instance_Name(instance_name);
    if (add_to_imported_list) LWS_Add_Instance_To_Imported_List(instance_name);
    if (object_name_out) lw_copy_text(object_name_out, lw_name_size, object_name);
    if (instance_name_out) lw_copy_text(instance_name_out, lw_name_size, instance_name);
    UpdateInstanceWithSurfaceInfo(instance_name, surface_info);
}
