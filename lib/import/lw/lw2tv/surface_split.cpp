#include "lib/import/lw/lw2tv/surface_split.h"

#include <algorithm>
#include <cstring>
#include <functional>

#include "lib/import/lw/lw2tv/bounded_text.h"
#include "lib/import/lw/lw2tv/conversion_run.h"
#include "lib/import/lw/lw2tv/mesh_output.h"
#include "lib/import/lw/lw2tv/texture_projection.h"
#include "lib/import/lw/lw2tv/tokens.h"
#include "lib/import/lw/lws/imported_instances.h"
#include "lib/toolkit/vc4_tv.h"

// A surface by its unique_name. The pointer decides, not the text: two entries of one text stay two surfaces.
struct Surface_Key {
    const char* unique_name;
    int32_t surface;
};

// A polygon and the place of its first index.
struct Placed_Polygon {
    int32_t polygon;
    int32_t first_index;
};

// Polygons are sorted by surface once, so that all pieces together cost one pass over them.
struct Split_Data {
    int32_t* vertex_tag;      // a point's newest user: surface number from 1; 0 none
    int32_t* vertex_remap;    // the point's index from 0 in the current piece; good where the tag is the piece's
    int32_t* used_points;     // of the current piece
    Surface_Key* keys;        // sorted by pointer
    int32_t* first_polygon;   // of each surface in `polygons`, and one more for the end
    Placed_Polygon* polygons; // in file order within a surface
    float* piece_vertices;
    int32_t* piece_indices;
    int32_t* piece_verts_per_poly;
};

static Split_Data split; // module-wide, so that a fatal exit leaves nothing that can't be freed

static const std::size_t name_size = 256; // what the services write, whatever the name's use

template <typename T>
static void free_array(T** array)
{
    Tv_Free_Memory(*array);
    *array = nullptr;
}

static void free_piece()
{
    free_array(&split.piece_vertices);
    free_array(&split.piece_indices);
    free_array(&split.piece_verts_per_poly);
}

void lw_release_split_data()
{
    free_piece();
    free_array(&split.vertex_tag);
    free_array(&split.vertex_remap);
    free_array(&split.used_points);
    free_array(&split.keys);
    free_array(&split.first_polygon);
    free_array(&split.polygons);
}

template <typename T>
static void allocate(T** array, int32_t clear, int32_t count, const char* message)
{
    *array = static_cast<T*>(Tv_Alloc_Memory(0, clear, static_cast<std::size_t>(count) * sizeof(T)));
    if (!*array) Import_IO_Report_Error(5, message);
}

static int32_t find_surface(const char* unique_name, int32_t num_keys)
{
    const Surface_Key* const keys = split.keys;
    const Surface_Key* const end = keys + num_keys;
    const Surface_Key* const found =
        std::lower_bound(keys, end, unique_name,
                         [](const Surface_Key& key, const char* name) { return std::less<>()(key.unique_name, name); });
    return found != end && found->unique_name == unique_name ? found->surface : -1;
}

// Calls take(surface, polygon, first_index) for each polygon that has a surface, in file order.
template <typename Take>
static void for_each_polygon(const lw_object_data* object, int32_t num_keys, Take take)
{
    const char* last_name = nullptr;
    int32_t surface = -1, first_index = 0;
    for (int32_t i = 0; i < object->num_polygons; ++i) {
        const char* const name = object->poly_surface[i];
        if (name != last_name) { // polygons of a surface come in runs
            last_name = name;
            surface = name ? find_surface(name, num_keys) : -1;
        }
        if (surface >= 0) take(surface, i, first_index);
        first_index += object->verts_per_poly[i];
    }
}

// Counting sort by surface.
static void sort_polygons(const lw_object_data* object, int32_t count)
{
    const char* const message = "Out of memory while allocating temporary MESH vertices/polygon array";
    allocate(&split.keys, 0, count, message);
    allocate(&split.first_polygon, 1, count + 2, message);
    allocate(&split.polygons, 0, object->num_polygons, message);
    for (int32_t i = 0; i < count; ++i) split.keys[i] = {object->surface_names[i].unique_name, i};
    std::sort(split.keys, split.keys + count,
              [](const Surface_Key& a, const Surface_Key& b) { return std::less<>()(a.unique_name, b.unique_name); });
    // Counts stand two places up: the sums below leave each surface's start one place up, and the filling moves it to
    // the next one's start, so that in the end every start stands in its own place.
    int32_t* const starts = split.first_polygon;
    for_each_polygon(object, count, [starts](int32_t surface, int32_t, int32_t) { ++starts[surface + 2]; });
    for (int32_t i = 2; i < count + 2; ++i) starts[i] += starts[i - 1];
    for_each_polygon(object, count, [starts](int32_t surface, int32_t polygon, int32_t first_index) {
        split.polygons[starts[surface + 1]++] = {polygon, first_index};
    });
}

static void make_parent(const lw_object_data* object, char* group_object_name, std::size_t size,
                        char* group_instance_name, const char* parent_name)
{
    lw_format_text(group_object_name, size, "%s (from object file)", object->base_name);
    Import_IO_MakeNameUnique(lw_tokens.object, group_object_name, group_object_name);
    Tv_Add_Empty_Node(lw_tokens.object, group_object_name, 0);
    Import_IO_MakeNameUnique(lw_tokens.instance, object->base_name, group_instance_name);
    Tv_Add_Instance(lw_tokens.instance, group_instance_name, lw_tokens.object, group_object_name, 0);
    if (std::strcmp(parent_name, "world") == 0) {
        Tv_Attach(lw_tokens.instance, group_instance_name, lw_tokens.instance, "world", 0);
        Import_IO_Set_Root_Imported_Instance_Name(group_instance_name);
    } else {
        Tv_Attach(lw_tokens.instance, group_instance_name, lw_tokens.object, parent_name, 0);
    }
    Import_IO_SaveHandleName(lw_tokens.object, group_object_name);
    Import_IO_SaveHandleName(lw_tokens.instance, group_instance_name);
}

struct Piece_Size {
    int32_t vertices, indices, polygons;
};

// Numbers the surface's points in the order of the file, and notes them. A file's index may name no point.
static Piece_Size collect_points(const lw_object_data* object, int32_t surface)
{
    Piece_Size size = {};
    const int32_t tag = surface + 1;
    int32_t lowest = INT32_MAX, highest = -1;
    for (int32_t p = split.first_polygon[surface]; p < split.first_polygon[surface + 1]; ++p) {
        const Placed_Polygon placed = split.polygons[p];
        const int32_t corners = object->verts_per_poly[placed.polygon];
        ++size.polygons;
        size.indices += corners;
        for (int32_t i = 0; i < corners; ++i) {
            const int32_t point = object->face_indices[placed.first_index + i] - 1;
            if (point < 0 || point >= object->num_vertices || split.vertex_tag[point] == tag) continue;
            split.vertex_tag[point] = tag;
            split.used_points[size.vertices++] = point;
            lowest = std::min(lowest, point);
            highest = std::max(highest, point);
        }
    }
    if (highest - lowest < size.vertices * int64_t{16}) { // dense: reading the tags beats sorting
        size.vertices = 0;
        for (int32_t point = lowest; point <= highest; ++point) {
            if (split.vertex_tag[point] == tag) split.used_points[size.vertices++] = point;
        }
    } else {
        std::sort(split.used_points, split.used_points + size.vertices);
    }
    for (int32_t i = 0; i < size.vertices; ++i) split.vertex_remap[split.used_points[i]] = i;
    return size;
}

static void fill_piece(const lw_object_data* object, int32_t surface, const Piece_Size& size)
{
    for (int32_t i = 0; i < size.vertices; ++i) {
        std::memcpy(split.piece_vertices + std::size_t{3} * static_cast<std::size_t>(i),
                    object->vertices + std::size_t{3} * static_cast<std::size_t>(split.used_points[i]),
                    3 * sizeof(float));
    }
    int32_t* index = split.piece_indices;
    int32_t* corner_count = split.piece_verts_per_poly;
    for (int32_t p = split.first_polygon[surface]; p < split.first_polygon[surface + 1]; ++p) {
        const Placed_Polygon placed = split.polygons[p];
        const int32_t corners = object->verts_per_poly[placed.polygon];
        *corner_count++ = corners;
        for (int32_t i = 0; i < corners; ++i) {
            const int32_t point = object->face_indices[placed.first_index + i] - 1;
            // What names no point of the object names none of the piece.
            const bool is_point = point >= 0 && point < object->num_vertices;
            *index++ = (is_point ? split.vertex_remap[point] : size.vertices) + 1;
        }
    }
}

static void output_piece(const lw_object_data* object, int32_t surface, const char* group_object_name,
                         const char* parent_name, int16_t add_to_imported_list)
{
    const Piece_Size size = collect_points(object, surface);
    if (size.vertices == 0 || size.polygons == 0 || size.indices == 0) return;
    allocate(&split.piece_vertices, 0, 3 * size.vertices, "Out of memory while allocating temporary vertex array");
    allocate(&split.piece_indices, 0, size.indices, "Out of memory while allocating temporary MESH face indices array");
    allocate(&split.piece_verts_per_poly, 0, size.polygons,
             "Out of memory while allocating temporary MESH vertices/polygon array");
    fill_piece(object, surface, size);

    const LW_Surface_Name& entry = object->surface_names[surface];
    const LW_Surface_Info* const info = object->surface_info + surface;
    char piece_object_name[name_size], instance_name[name_size];
    LW_Output_Mesh(entry.name, size.polygons, size.vertices, split.piece_verts_per_poly, split.piece_vertices,
                   split.piece_indices, entry.unique_name, piece_object_name, info, nullptr, nullptr, parent_name,
                   nullptr, add_to_imported_list);
    Import_IO_MakeNameUnique(lw_tokens.instance, piece_object_name, instance_name);
    Tv_Add_Instance(lw_tokens.instance, instance_name, lw_tokens.object, piece_object_name, 0);
    Tv_Attach(lw_tokens.instance, instance_name, lw_tokens.object, group_object_name, 0);
    Import_IO_SaveHandleName(lw_tokens.instance, instance_name);
    UpdateInstanceWithSurfaceInfo(instance_name, info);
    if (add_to_imported_list) LWS_Add_Instance_To_Imported_List(instance_name);
    free_piece();
}

void lw_split_by_surface(lw_object_data* object, char* instance_name_out, char* object_name_out,
                         const char* parent_name, int16_t add_to_imported_list)
{
    lw_debug_printf("\nExploding mesh for object %s\n", object->base_name);
    allocate(&split.vertex_tag, 1, object->num_vertices, "Out of memory while allocating the vertex tag array");
    allocate(&split.vertex_remap, 1, object->num_vertices, "Out of memory while allocating the vertex remapping array");
    allocate(&split.used_points, 0, object->num_vertices, "Out of memory while allocating the vertex remapping array");
    lw_fill_poly_surface_forward(object->poly_surface, object->num_polygons);
    // Surfaces are counted in 16 bits here.
    const int16_t count = static_cast<int16_t>(object->num_surfaces);
    if (count > 0) sort_polygons(object, count);

    char group_object_name[512], group_instance_name[name_size];
    make_parent(object, group_object_name, sizeof group_object_name, group_instance_name, parent_name);
    if (object_name_out) lw_copy_text(object_name_out, name_size, group_object_name);
    if (instance_name_out) lw_copy_text(instance_name_out, name_size, group_instance_name);
    for (int32_t surface = 0; surface < count; ++surface) {
        output_piece(object, surface, group_object_name, parent_name, add_to_imported_list);
    }
    lw_release_split_data();
}
