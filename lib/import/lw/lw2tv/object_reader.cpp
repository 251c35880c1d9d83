#include "lib/import/lw/lw2tv/object_reader.h"

#include <algorithm>
#include <cstring>

#include "lib/import/lw/base/arrays.h"
#include "lib/import/lw/base/option_variables.h"
#include "lib/import/lw/base/report.h"
#include "lib/import/lw/base/run_state.h"
#include "lib/import/lw/base/tokens.h"
#include "lib/import/lw/lw2tv/binary_input.h"
#include "lib/import/lw/lw2tv/mesh_output.h"
#include "lib/import/lw/lw2tv/object_data.h"
#include "lib/import/lw/lw2tv/polygons.h"
#include "lib/import/lw/lw2tv/surface_reader.h"
#include "lib/import/lw/lw2tv/surface_split.h"
#include "lib/platform/files.h"
#include "lib/services/import_io.h"
#include "lib/toolkit/vc4_tv.h"

int32_t total_file_length = 0;

static lw_object_data object; // module-wide, so that a fatal exit leaves nothing that can't be freed

static const char* const no_room_for_names = "Out of memory while allocating surface names array";
static const int32_t surface_step = 100;
static const std::size_t surface_name_size = 256;        // of a name in SRFS, its end included
static const std::size_t surface_chunk_name_size = 1024; // of the name before a SURF chunk's sub-chunks

static void free_surface_names(LW_Surface_Name* names, int32_t count)
{
    for (int32_t i = 0; i < count; ++i) {
        Tv_Free_Memory(names[i].unique_name);
        Tv_Free_Memory(names[i].name);
    }
    Tv_Free_Memory(names);
}

void lw_release_object_data()
{
    lw_release_split_data();
    lw_release_surface_data();
    free_surface_names(object.surface_names, object.num_surfaces);
    while (object.old_surface_names) {
        lw_old_surface_names* const old = object.old_surface_names;
        object.old_surface_names = old->next;
        free_surface_names(old->names, old->count);
        Tv_Free_Memory(old);
    }
    Tv_Free_Memory(object.surface_order);
    Tv_Free_Memory(object.surface_chunk_name);
    Tv_Free_Memory(object.poly_surface);
    Tv_Free_Memory(object.surface_info);
    lw_free_file_read_buffer();
    Tv_Free_Memory(object.verts_per_poly);
    Tv_Free_Memory(object.face_indices);
    Tv_Free_Memory(object.vertices);
    object = {};
}

// ---- PNTS ----------------------------------------------------------------------------------------------------------

static int16_t read_points(std::FILE* fp, int32_t chunk_size)
{
    object.num_vertices = chunk_size / 12;
    // A size that isn't whole points still has its floats read; an empty chunk still has an array.
    const int32_t num_floats = chunk_size / 4;
    lw_allocate(&object.vertices, std::max(num_floats, 3), "Out of memory while allocating vertex array");
    if (get_FLOAT(fp, num_floats, object.vertices) != 0) return 1;
    lw_debug_printf("\tPNTS chunk: Number of vertex coordinates = %ld\n", static_cast<long>(object.num_vertices));
    for (int32_t i = 0; lw_debug_is_on() && i < object.num_vertices; ++i) {
        const float* const point = object.vertices + std::size_t{3} * static_cast<std::size_t>(i);
        lw_debug_printf("\t\t%ld = (%g, %g, %g)\n", static_cast<long>(i), static_cast<double>(point[0]),
                        static_cast<double>(point[1]), static_cast<double>(point[2]));
    }
    return 0;
}

// ---- SRFS ----------------------------------------------------------------------------------------------------------

// An earlier chunk's table goes; its strings stay while polygons may point to them.
static void retire_surface_names()
{
    lw_free_array(&object.surface_order);
    lw_free_array(&object.surface_info);
    if (!object.surface_names) return;
    lw_old_surface_names* old = nullptr;
    lw_allocate(&old, 1, no_room_for_names);
    *old = {object.surface_names, object.num_surfaces, object.old_surface_names};
    object.old_surface_names = old;
    object.surface_names = nullptr;
    object.num_surfaces = object.surface_capacity = 0;
}

static void grow_surface_names()
{
    const int32_t capacity = object.surface_capacity + std::max(surface_step, object.surface_capacity / 2);
    lw_grow(&object.surface_names, capacity, "Out of memory while re-allocating surface names array");
    object.surface_capacity = capacity;
}

static void copy_surface_name(char** address, const char* text)
{
    Import_IO_Copy_String(address, text);
    if (!*address) lw_report_fatal(no_room_for_names);
}

static void add_surface_name(const char* name)
{
    if (object.num_surfaces + 1 >= object.surface_capacity) grow_surface_names();
    char unique_name[surface_name_size];
    if (lw_make_surfnames_unique) {
        Import_IO_MakeAndSaveUniqueName(lw_tokens.surface, name, unique_name);
    } else {
        lw_copy_text(unique_name, sizeof unique_name, name);
    }
    LW_Surface_Name* const entry = object.surface_names + object.num_surfaces;
    *entry = {};
    ++object.num_surfaces; // at once, so that the release finds what the entry has
    copy_surface_name(&entry->name, name);
    copy_surface_name(&entry->unique_name, unique_name);
}

// False when the file ended first. A name that nothing terminates makes no entry.
static bool read_surface_names(std::FILE* fp, int32_t chunk_size)
{
    retire_surface_names();
    lw_allocate_cleared(&object.surface_names, surface_step, no_room_for_names);
    object.surface_capacity = surface_step;

    char name[surface_name_size];
    std::size_t length = 0, kept = 0; // in the file, and in `name`
    int32_t remaining = chunk_size;
    while (remaining > 0 && !lw_at_end_of_file(fp)) {
        const char c = static_cast<char>(LW_GET_BYTE(fp));
        --remaining;
        if (c != '\0') {
            if (kept < sizeof name - 1) name[kept++] = c;
            ++length;
            continue;
        }
        if (length == 0) continue; // a stray zero byte
        name[kept] = '\0';
        add_surface_name(name);
        if (length % 2 == 0) { // odd with its end: there is a pad byte
            lw_skip_bytes(fp, 1);
            --remaining;
        }
        length = kept = 0;
    }

    if (object.num_surfaces > 0) {
        lw_debug_printf("\tSRFS chunk: Number of surfaces read in = %ld\n", static_cast<long>(object.num_surfaces));
        for (int32_t i = 0; i < object.num_surfaces; ++i) {
            Tv_Surface(object.surface_names[i].unique_name, 0);
            lw_debug_printf("\t\tSurface # %d: %s\n", i + 1, object.surface_names[i].name);
        }
        num_surfaces_read += object.num_surfaces;
        lw_allocate_cleared(&object.surface_info, object.num_surfaces,
                            "Out of memory while allocating surface information array");
    }
    return remaining <= 0;
}

// ---- SURF ----------------------------------------------------------------------------------------------------------

static bool name_comes_before(int32_t a, int32_t b)
{
    const int order = std::strcmp(object.surface_names[a].name, object.surface_names[b].name);
    return order != 0 ? order < 0 : a < b;
}

// The first entry of this name, or -1. Files have tens of thousands of surfaces too, so the table is sorted once.
static int32_t find_surface_name(const char* name)
{
    if (object.num_surfaces == 0) return -1;
    if (!object.surface_order) {
        lw_allocate(&object.surface_order, object.num_surfaces, no_room_for_names);
        for (int32_t i = 0; i < object.num_surfaces; ++i) object.surface_order[i] = i;
        std::sort(object.surface_order, object.surface_order + object.num_surfaces, name_comes_before);
    }
    const int32_t* const order = object.surface_order;
    const int32_t* const end = order + object.num_surfaces;
    const int32_t* const found = std::lower_bound(order, end, name, [](int32_t entry, const char* text) {
        return std::strcmp(object.surface_names[entry].name, text) < 0;
    });
    return found != end && std::strcmp(object.surface_names[*found].name, name) == 0 ? *found : -1;
}

// What a SURF chunk can end with. A file that ends in the name is left to the walk.
enum Surface_Result { SURFACE_READ, SURFACE_FAILED, SURFACE_CUT };

static Surface_Result read_surface(std::FILE* fp, int32_t chunk_size)
{
    char name[surface_chunk_name_size];
    std::size_t length = 0, kept = 0; // in the file, and in `name`
    for (;;) {
        if (lw_at_end_of_file(fp)) return SURFACE_CUT;
        const char c = static_cast<char>(LW_GET_BYTE(fp));
        if (c == '\0') break;
        if (kept < sizeof name - 1) name[kept++] = c;
        ++length;
    }
    name[kept] = '\0';
    uint32_t chunk_remaining = static_cast<uint32_t>(chunk_size) - static_cast<uint32_t>(length + 1);
    if (length % 2 == 0) {
        lw_skip_bytes(fp, 1);
        --chunk_remaining;
    }

    copy_surface_name(&object.surface_chunk_name, name);
    // The table's names are cut at their own limit, so a longer one is looked for by what the table can hold.
    if (kept >= surface_name_size) name[surface_name_size - 1] = '\0';
    const int32_t entry = find_surface_name(name);
    if (entry >= 0) copy_surface_name(&object.surface_chunk_name, object.surface_names[entry].unique_name);
    LW_Surface_Info* const info = entry >= 0 ? object.surface_info + entry : nullptr;
    const int16_t failed = LW_Parse_Surface_Definition(fp, chunk_remaining, object.surface_chunk_name, info);
    if (failed) {
        lw_report(LW_ERROR, "Error while reading attributes for surface definition %s", object.surface_chunk_name);
        return SURFACE_FAILED;
    }
    lw_free_array(&object.surface_chunk_name);
    return SURFACE_READ;
}

// ---- the walk ------------------------------------------------------------------------------------------------------

static bool chunk_is_bad(const char* id, int32_t size)
{
    for (int i = 0; i < 4; ++i) {
        const unsigned char c = static_cast<unsigned char>(id[i]);
        if (c < 0x20 || c > 0x7F) return true;
    }
    const int32_t margin = 100;
    return size < 0 || int64_t{size} > int64_t{total_file_length} + margin;
}

static int16_t report_corruption(const char* filename)
{
    lw_report(LW_ERROR,
              "Lightwave object file '%s' is corrupt at file offset 0x%lx. IFF chunk name or block length is bad. "
              "Parsing aborted.",
              filename, static_cast<unsigned long>(static_cast<uint32_t>(lw_file_offset)));
    return 1;
}

static void skip_unknown_chunk(std::FILE* fp, const char* id, int32_t size)
{
    if (lw_print_warnings) {
        lw_report(LW_WARNING, "Unknown %s sub-chunk found in Lightwave file: name = '%s', size = %lu\n", "", id,
                  static_cast<unsigned long>(size));
    }
    lw_skip_bytes(fp, static_cast<uint32_t>(size));
    lw_debug_printf("\t\tUnrecognized chunk name!\n");
}

// Reads the chunks of a FORM with form_remaining bytes left. The walk ends where the count comes to just 0: a length
// that doesn't fit the chunks runs into the end of the file, where names read as 0xFF, and ends as corruption.
static int16_t read_chunks(std::FILE* fp, uint32_t form_remaining, const char* filename)
{
    bool cut = false; // the file ended within a chunk
    while (form_remaining != 0) {
        if (lw_user_stops(lw_file_offset, total_file_length)) return 1;
        char id[5];
        LW_GET_ID(fp, id);
        const int32_t size = static_cast<int32_t>(LW_GET_U4(fp));
        form_remaining -= 8;
        if (chunk_is_bad(id, size)) return report_corruption(filename);
        if (std::strcmp(id, "PNTS") == 0) {
            if (read_points(fp, size) != 0) return 1;
        } else if (std::strcmp(id, "SRFS") == 0) {
            if (!read_surface_names(fp, size)) cut = true;
        } else if (std::strcmp(id, "POLS") == 0) {
            if (!lw_read_polygons(&object, size, filename)) cut = true;
        } else if (std::strcmp(id, "SURF") == 0) {
            const Surface_Result result = read_surface(fp, size);
            if (result == SURFACE_FAILED) return 1;
            if (result == SURFACE_CUT) cut = true;
        } else {
            skip_unknown_chunk(fp, id, size);
        }
        if (size % 2 != 0) {
            lw_skip_bytes(fp, 1);
            --form_remaining;
        }
        form_remaining -= static_cast<uint32_t>(size);
    }
    return cut ? report_corruption(filename) : 0;
}

static int16_t read_form(std::FILE* fp, const char* filename, int16_t read_form_id)
{
    char id[5];
    if (read_form_id) {
        LW_GET_ID(fp, id);
        if (std::strcmp(id, "FORM") != 0) {
            lw_report(LW_ERROR, "File '%s' is not in the IFF format.", filename);
            return 1;
        }
        char text[256];
        lw_format_text(text, sizeof text, "Processing Object: %s", object.base_name);
        Import_IO_Display_Info_Text(text);
    }
    const uint32_t form_length = LW_GET_U4(fp);
    if (form_length == 0) {
        lw_report(LW_ERROR, "Bad FORM length (zero) in Lighwave file %s", filename);
        return 1;
    }
    LW_GET_ID(fp, id);
    if (std::strcmp(id, "LWOB") != 0) {
        lw_report(LW_ERROR, "File '%s' is not in the Lighwave LWOB format", filename);
        return 1;
    }
    return read_chunks(fp, form_length - 4, filename);
}

// ---- the result ----------------------------------------------------------------------------------------------------

static void build_object(char* instance_name_out, char* object_name_out, const char* parent_name,
                         int16_t add_to_imported_list)
{
    if (object.num_polygons < 1) {
        lw_report(LW_WARNING, "Object '%s' does not have any polygons in it!\n", object.base_name);
        return;
    }
    if (object.num_vertices < 3) {
        lw_report(LW_WARNING, "Object '%s' does not have any vertices in it!\n", object.base_name);
        return;
    }
    num_polygons_read += object.num_polygons;
    num_v_indices_read += object.num_indices;
    num_vertices_read += object.num_vertices;
    if (object.num_surfaces > 1 && lw_explode_obj_by_surf_name) {
        lw_split_by_surface(&object, instance_name_out, object_name_out, parent_name, add_to_imported_list);
        return;
    }
    // A file without surface names gives a mesh without a surface.
    static const LW_Surface_Info no_surface = {};
    const bool has_surface = object.num_surfaces > 0;
    LW_Output_Mesh(object.base_name, object.num_polygons, object.num_vertices, object.verts_per_poly, object.vertices,
                   object.face_indices, has_surface ? object.surface_names[0].unique_name : nullptr, nullptr,
                   has_surface ? object.surface_info : &no_surface, instance_name_out, object_name_out, parent_name,
                   object.num_surfaces > 1 ? object.poly_surface : nullptr, add_to_imported_list);
}

int16_t read_LWOB(std::FILE* fp, char* filename, int16_t read_form_id, char* instance_name_out, char* object_name_out,
                  const char* parent_name, int16_t add_to_imported_list)
{
    if (!fp) return 1;
    total_file_length = platform::file_length(fp);
    Import_IO_String_To_Lower(filename, filename);
    object.last_surface_number = -1;
    Import_IO_ExtractBaseFileName(filename, object.base_name);
    lw_debug_printf("\nReading from Lightwave object file '%s'.\n", filename);
    if (read_form_id && lw_reset_file_read_buffer() != 0) return 1;
    const int16_t result = read_form(fp, filename, read_form_id);
    if (result == 0) build_object(instance_name_out, object_name_out, parent_name, add_to_imported_list);
    lw_release_object_data();
    return result;
}
