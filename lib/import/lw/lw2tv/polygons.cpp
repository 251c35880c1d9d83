#include "lib/import/lw/lw2tv/polygons.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "lib/import/lw/base/arrays.h"
#include "lib/import/lw/base/option_variables.h"
#include "lib/import/lw/base/report.h"
#include "lib/import/lw/base/run_state.h"
#include "lib/import/lw/lw2tv/binary_input.h"
#include "lib/toolkit/vc4_tv.h"

static const int32_t index_step = 4000;
static const int32_t poly_step = 1000;
static const int32_t index_bytes = 2;
static const int32_t smallest_polygon_bytes = 10; // of one that is kept: a count, three indices, a surface

// A capacity of whole steps that holds `needed` entries and one more. What the rest of the chunk can ask for is known,
// and no more than the file has, so that an array grows once for each chunk and is hardly ever copied.
static int32_t grown_capacity(int32_t step, int64_t needed)
{
    return static_cast<int32_t>(std::min((needed / step + 1) * step, int64_t{INT32_MAX}));
}

static void make_room_for_indices(int32_t** face_indices, int32_t* index_capacity, int64_t needed)
{
    const int32_t capacity = grown_capacity(index_step, needed);
    lw_grow(face_indices, capacity, "Out of memory while re-allocating MESH face indices array");
    *index_capacity = capacity;
}

static void make_room_for_polygons(int32_t** verts_per_poly, char*** poly_surface, int32_t* poly_capacity,
                                   int64_t needed)
{
    const int32_t capacity = grown_capacity(poly_step, needed);
    lw_grow(verts_per_poly, capacity, "Out of memory while re-allocating MESH vertices/polygon array");
    lw_grow(poly_surface, capacity, "Out of memory while re-allocating surface names array");
    *poly_capacity = capacity;
}

// The file's indices plus 1, taken from the buffer in runs; a number may straddle its end.
static void read_indices(int32_t* out, int32_t count)
{
    while (count > 0) {
        const int32_t here = std::min(count, lw_buf_io_chars_in_buffer / 2);
        if (here == 0) {
            *out++ = LW_GET_U2(lw_infile) + 1;
            --count;
            continue;
        }
        const unsigned char* const bytes = lw_buffered_bytes();
        for (int32_t i = 0; i < here; ++i) out[i] = lw_u2_at(bytes + 2 * i) + 1;
        lw_take_bytes(2 * here);
        out += here;
        count -= here;
    }
}

// An odd byte at the chunk's end belongs to nothing.
static void skip_odd_byte(int32_t* chunk_remaining)
{
    if (*chunk_remaining != 1) return;
    lw_skip_bytes(lw_infile, 1);
    *chunk_remaining = 0;
}

int16_t ReadPolygon(int32_t** face_indices, int32_t** verts_per_poly, char*** poly_surface, int32_t* index_capacity,
                    int32_t* poly_capacity, int32_t* num_indices, int32_t* num_polygons, int32_t* chunk_remaining,
                    int16_t* surface_number)
{
    int16_t result = 1;
    *surface_number = 1;
    if (*chunk_remaining >= 2) {
        const int16_t count = static_cast<int16_t>(LW_GET_U2(lw_infile));
        *chunk_remaining -= 2;
        const int32_t there = std::min<int32_t>(count, *chunk_remaining / 2);
        if (count >= 3) {
            const int64_t end = int64_t{*num_indices} + count;
            if (end >= *index_capacity) {
                make_room_for_indices(face_indices, index_capacity, end + *chunk_remaining / index_bytes);
            }
            if (*num_polygons + 1 >= *poly_capacity) {
                make_room_for_polygons(verts_per_poly, poly_surface, poly_capacity,
                                       int64_t{*num_polygons} + 1 + *chunk_remaining / smallest_polygon_bytes);
            }
            (*verts_per_poly)[(*num_polygons)++] = count;
            int32_t* const indices = *face_indices + *num_indices;
            read_indices(indices, there);
            for (int32_t i = there; i < count; ++i) indices[i] = 0; // the chunk ended: this polygon is its last
            *num_indices += there;
            *chunk_remaining -= 2 * there;
            result = 0;
        } else if (there > 0) {
            lw_skip_bytes(lw_infile, 2 * static_cast<uint32_t>(there));
            *chunk_remaining -= 2 * there;
        }
    }
    if (*chunk_remaining >= 2) {
        *surface_number = static_cast<int16_t>(LW_GET_U2(lw_infile));
        *chunk_remaining -= 2;
    }
    skip_odd_byte(chunk_remaining);
    return result;
}

// A polygon that lies in the buffer as a whole, and for which there is room: nearly all of them. False for any other,
// with nothing taken.
static bool take_buffered_polygon(lw_object_data* object, int32_t* chunk_remaining, int16_t* surface_number)
{
    const int32_t there = std::min(lw_buf_io_chars_in_buffer, *chunk_remaining);
    if (there < 2) return false;
    const unsigned char* bytes = lw_buffered_bytes();
    const int32_t count = static_cast<int16_t>(lw_u2_at(bytes));
    const int32_t size = 2 * count + 4;
    if (count < 3 || size > there) return false;
    if (count >= object->index_capacity - object->num_indices) return false;
    if (object->num_polygons + 1 >= object->poly_capacity) return false;
    int32_t* out = object->face_indices + object->num_indices;
    for (int32_t* const end = out + count; out != end; ++out) *out = lw_u2_at(bytes += 2) + 1;
    *surface_number = static_cast<int16_t>(lw_u2_at(bytes + 2));
    object->verts_per_poly[object->num_polygons++] = count;
    object->num_indices += count;
    *chunk_remaining -= size;
    lw_take_bytes(size);
    return true;
}

// The newest polygon's surface. Number 0, or a table with no name, links nothing: the polygon goes with the one before.
static void link_surface(lw_object_data* object, int16_t surface_number)
{
    const int32_t number = std::abs(int32_t{surface_number});
    const int16_t kept = static_cast<int16_t>(number);
    char** const entry = object->poly_surface + object->num_polygons - 1;
    *entry = nullptr;
    if (kept == object->last_surface_number) return;
    object->last_surface_number = kept;
    const int32_t index = std::min(number, object->num_surfaces) - 1;
    if (index >= 0) *entry = object->surface_names[index].unique_name;
}

static int16_t read_and_link(lw_object_data* object, int32_t* chunk_remaining)
{
    int16_t surface_number = 1;
    if (take_buffered_polygon(object, chunk_remaining, &surface_number) ||
        ReadPolygon(&object->face_indices, &object->verts_per_poly, &object->poly_surface, &object->index_capacity,
                    &object->poly_capacity, &object->num_indices, &object->num_polygons, chunk_remaining,
                    &surface_number) == 0) {
        link_surface(object, surface_number);
    }
    return surface_number;
}

static void start_arrays(lw_object_data* object)
{
    object->num_polygons = object->num_indices = 0;
    object->index_capacity = index_step;
    object->poly_capacity = poly_step;
    lw_allocate(&object->face_indices, index_step, "Out of memory while allocating MESH face indices array");
    lw_allocate(&object->verts_per_poly, poly_step, "Out of memory while allocating MESH vertices/polygon array");
    lw_allocate_cleared(&object->poly_surface, poly_step, "Out of memory while allocating surface names array");
}

// Reads the details that follow a polygon with a negative surface number. They have none of their own: a negative
// number on one of them counts by its absolute value.
static void read_details(lw_object_data* object, int32_t* chunk_remaining, const char* filename)
{
    if (*chunk_remaining < 2 || lw_at_end_of_file(lw_infile)) return;
    const int16_t count = static_cast<int16_t>(LW_GET_U2(lw_infile));
    *chunk_remaining -= 2;
    if (lw_print_warnings) {
        Import_IO_printf("File '%s': A polygon was found which has %d detail polygons. These detail polygons will be "
                         "imported as separate polygons.",
                         filename, count);
    }
    for (int16_t i = 0; i < count; ++i) {
        if (*chunk_remaining <= 0 || lw_at_end_of_file(lw_infile)) return;
        read_and_link(object, chunk_remaining);
    }
}

bool lw_read_polygons(lw_object_data* object, int32_t chunk_size, const char* filename)
{
    start_arrays(object);
    const uint32_t start = static_cast<uint32_t>(lw_file_offset);
    int32_t chunk_remaining = chunk_size;
    while (chunk_remaining > 0 && !lw_at_end_of_file(lw_infile)) {
        if (read_and_link(object, &chunk_remaining) < 0) read_details(object, &chunk_remaining, filename);
    }
    lw_debug_printf("\tPOLS chunk: Number of polygons = %ld\n", static_cast<long>(object->num_polygons));
    // Bytes past the end of the file were counted but not taken.
    return static_cast<uint32_t>(lw_file_offset) - start == static_cast<uint32_t>(chunk_size);
}
