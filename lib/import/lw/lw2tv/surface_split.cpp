#include "lib/import/lw/lw2tv/surface_split.h"

#include <algorithm>
#include <cstring>

#include "lib/import/lw/base/arrays.h"
#include "lib/import/lw/base/bounded_text.h"
#include "lib/import/lw/base/imported_instances.h"
#include "lib/import/lw/base/report.h"
#include "lib/import/lw/base/tokens.h"
#include "lib/import/lw/lw2tv/mesh_output.h"
#include "lib/import/lw/lw2tv/texture_projection.h"
#include "lib/toolkit/vc4_tv.h"

// A surface by its unique_name. The pointer decides, not the text: two entries of one text stay two surfaces.
struct Surface_Key {
    const char* unique_name; // null: an empty place
    int32_t surface;
};

// Polygons of one surface that stand side by side in the file. They end where the next run begins.
struct Polygon_Run {
    int32_t polygon, index; // of its first polygon
    int16_t surface;        // -1 none
    int16_t corners;        // of each polygon; 0 where they differ
};

struct Surface_Runs {
    int32_t first; // in run_order; they end where the next surface's begin
    int32_t num_polygons, num_indices;
};

// One pass over the polygons parts them into runs, so that all pieces together cost one more; a piece's arrays are
// gathered from its runs, where they stay near, and never stand beside those of all the others.
struct Split_Data {
    // A place for each point, and one more for what names no point.
    int16_t* vertex_tag;   // a point's newest user: surface number from 1; 0 none
    int32_t* vertex_remap; // the point's index from 1 in the current piece; good where the tag is the piece's
    int32_t* used_points;  // of the current piece
    Surface_Key* keys;     // a hash table of key_mask + 1 places
    uint32_t key_mask;
    Surface_Runs* surfaces;
    Polygon_Run* runs;
    int32_t num_runs, room_for_runs;
    int32_t* run_order;            // numbers of runs by surface, in file order within each
    int32_t* piece_verts_per_poly; // room for the largest piece
    int32_t* piece_indices;
    float* piece_vertices;
};

static Split_Data split; // module-wide, so that a fatal exit leaves nothing that can't be freed

void lw_release_split_data()
{
    lw_free_array(&split.vertex_tag);
    lw_free_array(&split.vertex_remap);
    lw_free_array(&split.used_points);
    lw_free_array(&split.keys);
    lw_free_array(&split.surfaces);
    lw_free_array(&split.runs);
    lw_free_array(&split.run_order);
    split.num_runs = split.room_for_runs = 0;
    lw_free_array(&split.piece_verts_per_poly);
    lw_free_array(&split.piece_indices);
    lw_free_array(&split.piece_vertices);
}

static Surface_Key* find_place(const char* unique_name)
{
    const uint64_t number = reinterpret_cast<uintptr_t>(unique_name) * uint64_t{0x9E3779B97F4A7C15};
    uint32_t place = static_cast<uint32_t>(number >> 32);
    for (;; ++place) {
        Surface_Key* const key = split.keys + (place & split.key_mask);
        if (!key->unique_name || key->unique_name == unique_name) return key;
    }
}

static void make_keys(const lw_object_data* object, int32_t count, const char* message)
{
    int32_t places = 4;
    while (places < 2 * count) places *= 2;
    lw_allocate_cleared(&split.keys, places, message);
    split.key_mask = static_cast<uint32_t>(places - 1);
    for (int32_t i = 0; i < count; ++i) {
        const char* const name = object->surface_names[i].unique_name;
        *find_place(name) = {name, i};
    }
}

// The array grows by half, so that many short runs cost no more than their number.
static void add_run(const Polygon_Run& run, const char* message)
{
    if (split.num_runs == split.room_for_runs) {
        const int32_t room = split.room_for_runs + split.room_for_runs / 2 + 256;
        lw_grow(&split.runs, room, message);
        split.room_for_runs = room;
    }
    split.runs[split.num_runs++] = run;
}

// All runs in file order, and a last one where they end. A polygon without a name goes with the one before.
static void find_runs(const lw_object_data* object, const char* message)
{
    int32_t index = 0;
    for (int32_t i = 0; i < object->num_polygons;) {
        const char* const name = object->poly_surface[i];
        const Surface_Key* const key = find_place(name);
        const int32_t surface = key->unique_name ? key->surface : -1;
        Polygon_Run run = {i, index, static_cast<int16_t>(surface), static_cast<int16_t>(object->verts_per_poly[i])};
        for (; i < object->num_polygons; ++i) {
            const char* const at = object->poly_surface[i];
            if (at && at != name) break;
            if (object->verts_per_poly[i] != run.corners) run.corners = 0;
            index += object->verts_per_poly[i];
        }
        add_run(run, message);
    }
    add_run({object->num_polygons, index, -1, 0}, message);
}

// Counting sort of the runs by surface.
static void order_runs(int32_t count)
{
    const int32_t num_runs = split.num_runs - 1;
    for (int32_t i = 0; i < num_runs; ++i) {
        const Polygon_Run* const run = split.runs + i;
        if (run->surface < 0) continue;
        Surface_Runs* const surface = split.surfaces + run->surface;
        ++surface[1].first;
        surface->num_polygons += run[1].polygon - run->polygon;
        surface->num_indices += run[1].index - run->index;
    }
    // Sums leave each surface's end at it, from where its runs are put down backwards.
    for (int32_t i = 0; i < count; ++i) split.surfaces[i + 1].first += split.surfaces[i].first;
    for (int32_t i = 0; i < count; ++i) split.surfaces[i].first = split.surfaces[i + 1].first;
    for (int32_t i = num_runs - 1; i >= 0; --i) {
        const int32_t surface = split.runs[i].surface;
        if (surface >= 0) split.run_order[--split.surfaces[surface].first] = i;
    }
}

static void part_polygons(const lw_object_data* object, int32_t count)
{
    const char* const polygons_message = "Out of memory while allocating temporary MESH vertices/polygon array";
    const char* const indices_message = "Out of memory while allocating temporary MESH face indices array";
    make_keys(object, count, polygons_message);
    lw_allocate_cleared(&split.surfaces, count + 1, polygons_message);
    find_runs(object, polygons_message);
    lw_allocate(&split.run_order, split.num_runs, polygons_message);
    order_runs(count);
    int32_t most_polygons = 0, most_indices = 0;
    for (int32_t i = 0; i < count; ++i) {
        most_polygons = std::max(most_polygons, split.surfaces[i].num_polygons);
        most_indices = std::max(most_indices, split.surfaces[i].num_indices);
    }
    lw_allocate(&split.piece_verts_per_poly, most_polygons, polygons_message);
    lw_allocate(&split.piece_indices, most_indices, indices_message);
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

static void fetch_ahead(const lw_object_data* object, int32_t i, int32_t end)
{
    constexpr int32_t ahead = 16, cache_line = 16; // runs; entries
    if (i + 2 * ahead < end) __builtin_prefetch(split.runs + split.run_order[i + 2 * ahead]);
    if (i + ahead >= end) return;
    const Polygon_Run* const run = split.runs + split.run_order[i + ahead];
    if (!run->corners) __builtin_prefetch(object->verts_per_poly + run->polygon);
    __builtin_prefetch(object->face_indices + run->index);
    __builtin_prefetch(object->face_indices + run->index + cache_line);
}

// Puts the piece's polygons in a row, with points of the object counted from 0, or the place after the last where an
// index names none. Notes the points that they name in used_points, each once, and returns how many. Runs lie
// far apart, so they are fetched ahead.
static int32_t gather_polygons(const lw_object_data* object, const Surface_Runs* surface, int16_t tag)
{
    const uint32_t num_points = static_cast<uint32_t>(object->num_vertices);
    const int32_t end = surface[1].first;
    int32_t *sizes = split.piece_verts_per_poly, *points = split.piece_indices;
    int32_t count = 0;
    split.vertex_tag[num_points] = tag; // never noted
    for (int32_t i = surface->first; i < end; ++i) {
        fetch_ahead(object, i, end);
        const Polygon_Run* const run = split.runs + split.run_order[i];
        const int32_t* const from = object->verts_per_poly + run->polygon;
        const int32_t num_polygons = run[1].polygon - run->polygon;
        sizes = run->corners ? std::fill_n(sizes, num_polygons, run->corners) : std::copy_n(from, num_polygons, sizes);
        const int32_t* const last = object->face_indices + run[1].index;
        for (const int32_t* index = object->face_indices + run->index; index != last; ++index) {
            const uint32_t point = std::min(static_cast<uint32_t>(*index) - 1, num_points);
            *points++ = static_cast<int32_t>(point);
            if (split.vertex_tag[point] == tag) continue;
            split.vertex_tag[point] = tag;
            split.used_points[count++] = static_cast<int32_t>(point);
        }
    }
    return count;
}

// Brings the noted points into the order of the file and numbers them.
static void number_points(int32_t num_points, int32_t count, int16_t tag)
{
    const auto [low, high] = std::minmax_element(split.used_points, split.used_points + count);
    const int32_t lowest = *low, highest = *high;
    if (highest - lowest < count * int64_t{16}) { // dense: reading the tags beats sorting
        int32_t* used = split.used_points;
        for (int32_t point = lowest; point <= highest; ++point) {
            if (split.vertex_tag[point] == tag) *used++ = point;
        }
    } else {
        std::sort(split.used_points, split.used_points + count);
    }
    for (int32_t i = 0; i < count; ++i) split.vertex_remap[split.used_points[i]] = i + 1;
    split.vertex_remap[num_points] = count + 1; // what names no point of the object names none of the piece
}

static void copy_points(const lw_object_data* object, int32_t count)
{
    for (int32_t i = 0; i < count; ++i) {
        const float* const point = object->vertices + std::size_t{3} * static_cast<std::size_t>(split.used_points[i]);
        std::copy(point, point + 3, split.piece_vertices + std::size_t{3} * static_cast<std::size_t>(i));
    }
}

static void output_piece(const lw_object_data* object, int32_t surface, const char* group_object_name,
                         const char* parent_name, int16_t add_to_imported_list)
{
    const Surface_Runs* const runs = split.surfaces + surface;
    int32_t* const indices = split.piece_indices;
    const int32_t num_polygons = runs->num_polygons;
    const int16_t tag = static_cast<int16_t>(surface + 1); // surfaces are counted in 16 bits
    const int32_t num_vertices = gather_polygons(object, runs, tag);
    if (num_vertices == 0) return; // no polygon, or none that names a point
    number_points(object->num_vertices, num_vertices, tag);
    lw_allocate(&split.piece_vertices, 3 * num_vertices, "Out of memory while allocating temporary vertex array");
    copy_points(object, num_vertices);
    for (int32_t i = 0; i < runs->num_indices; ++i) indices[i] = split.vertex_remap[indices[i]];

    const LW_Surface_Name& entry = object->surface_names[surface];
    const LW_Surface_Info* const info = object->surface_info + surface;
    char piece_object_name[lw_name_size], instance_name[lw_name_size];
    LW_Output_Mesh(entry.name, num_polygons, num_vertices, split.piece_verts_per_poly, split.piece_vertices, indices,
                   entry.unique_name, piece_object_name, info, nullptr, nullptr, parent_name, nullptr,
                   add_to_imported_list);
    Import_IO_MakeNameUnique(lw_tokens.instance, piece_object_name, instance_name);
    Tv_Add_Instance(lw_tokens.instance, instance_name, lw_tokens.object, piece_object_name, 0);
    Tv_Attach(lw_tokens.instance, instance_name, lw_tokens.object, group_object_name, 0);
    Import_IO_SaveHandleName(lw_tokens.instance, instance_name);
    UpdateInstanceWithSurfaceInfo(instance_name, info);
    if (add_to_imported_list) LWS_Add_Instance_To_Imported_List(instance_name);
    lw_free_array(&split.piece_vertices);
}

void lw_split_by_surface(lw_object_data* object, char* instance_name_out, char* object_name_out,
                         const char* parent_name, int16_t add_to_imported_list)
{
    lw_debug_printf("\nExploding mesh for object %s\n", object->base_name);
    lw_allocate_cleared(&split.vertex_tag, object->num_vertices + 1,
                        "Out of memory while allocating the vertex tag array");
    lw_allocate_cleared(&split.vertex_remap, object->num_vertices + 1,
                        "Out of memory while allocating the vertex remapping array");
    lw_allocate(&split.used_points, object->num_vertices, "Out of memory while allocating the vertex remapping array");
    // Surfaces are counted in 16 bits here.
    const int16_t count = static_cast<int16_t>(object->num_surfaces);
    if (count > 0) part_polygons(object, count);

    char group_object_name[512], group_instance_name[lw_name_size];
    make_parent(object, group_object_name, sizeof group_object_name, group_instance_name, parent_name);
    if (object_name_out) lw_copy_text(object_name_out, lw_name_size, group_object_name);
    if (instance_name_out) lw_copy_text(instance_name_out, lw_name_size, group_instance_name);
    for (int32_t surface = 0; surface < count; ++surface) {
        output_piece(object, surface, group_object_name, parent_name, add_to_imported_list);
    }
    lw_release_split_data();
}
