#include "lib/import/lw/lws/object_list.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

#include "lib/import/lw/base/arrays.h"
#include "lib/import/lw/base/bounded_text.h"
#include "lib/import/lw/base/name_index.h"
#include "lib/import/lw/base/path_mapping.h"
#include "lib/import/lw/base/report.h"
#include "lib/import/lw/base/run_state.h"
#include "lib/import/lw/base/tokens.h"
#include "lib/import/lw/lw2tv/object_reader.h"
#include "lib/import/lw/lw2tv/texture_projection.h"
#include "lib/import/lw/lws/object_search.h"
#include "lib/import/lw/lws/scene_numbers.h"
#include "lib/import/lw/lws/scene_parameters.h"
#include "lib/import/lw/lws/tokenizer.h"
#include "lib/import/lw/lws/transforms.h"
#include "lib/services/import_io.h"
#include "lib/toolkit/vc4_tv.h"

static constexpr int16_t most_objects = 32767;

lw_object_info* object_list = nullptr;
int16_t object_count = 0;
char current_instance_name[lw_name_size] = "";
char root_object_name[lw_name_size] = "";

static int32_t object_room = 0;          // rows that object_list has memory for
static lws_name_index rows_by_file = {}; // first row of each file_name
static char* mapped_name = nullptr;      // owned; of the object being loaded
static char* candidate = nullptr;        // owned; the last path that its search cut down

void lw_start_object_list()
{
    object_list = nullptr;
    object_count = 0;
    object_room = 0;
    current_instance_name[0] = 0;
}

void lw_make_scene_root(const char* file_name)
{
    char base[lw_name_size];
    char root_instance_name[lw_name_size];
    Import_IO_ExtractBaseFileName(file_name, base);
    const std::size_t length = std::strlen(base);
    lw_copy_text(base + length, sizeof base - length, " (from scene file)");
    Import_IO_MakeNameUnique(lw_tokens.object, base, root_object_name);
    Tv_Add_Empty_Node(lw_tokens.object, root_object_name, 0);
    Import_IO_MakeNameUnique(lw_tokens.instance, base, root_instance_name);
    Tv_Add_Instance(lw_tokens.instance, root_instance_name, lw_tokens.object, root_object_name, 0);
    Tv_Attach(lw_tokens.instance, root_instance_name, lw_tokens.instance, "world", 0);
    Import_IO_Set_Root_Imported_Instance_Name(root_instance_name);
    Import_IO_SaveHandleName(lw_tokens.object, root_object_name);
    Import_IO_SaveHandleName(lw_tokens.instance, root_instance_name);
}

static void free_load_names()
{
    lw_free_array(&mapped_name);
    lw_free_array(&candidate);
}

[[noreturn]] static void no_memory_for_names()
{
    lw_report_fatal("Out of memory while copying an object's name");
}

// ---- rows ----------------------------------------------------------------------------------------------------------

// Room for one row more. The list grows by doubling, so that adding n rows costs n moves and not n * n.
static void make_room(int16_t used, lw_object_info** list)
{
    const char* const no_room = "Out of memory while re-allocating object info array";
    if (used == most_objects) lw_report_fatal(no_room);
    if (*list && used < object_room) return;
    const int32_t wanted = *list ? object_room * 2 : 16;
    lw_grow(list, wanted, no_room);
    object_room = wanted;
}

void lw_add_object_to_list(int16_t* count, const char* file_name, const char* instance_name, const char* object_name,
                           lw_object_info** list)
{
    make_room(*count, list);
    const int16_t number = (*count)++;
    lw_object_info* const row = &(*list)[number];
    *row = {};
    row->parent_index = -1;
    if (file_name) {
        Import_IO_Copy_String(&row->file_name, file_name);
        if (!row->file_name || !lws_add_name(&rows_by_file, row->file_name, number)) no_memory_for_names();
    }
    if (object_name) {
        Import_IO_Copy_String(&row->object_name, object_name);
        if (!row->object_name) no_memory_for_names();
        int32_t primitives = 0;
        Tv_Inquire_Object(object_name, lw_tokens.numprimitives, &primitives, 1, 0);
        row->object_is_empty = primitives == 0;
    }
    if (instance_name) {
        Import_IO_Copy_String(&row->instance_name, instance_name);
        if (!row->instance_name) no_memory_for_names();
        char* master = nullptr;
        Tv_Inquire_Instance(instance_name, lw_tokens.masterobject, &master, 1, 0);
        row->no_master_object = master == nullptr;
    }
}

void lw_free_object_list()
{
    free_load_names();
    lws_free_name_index(&rows_by_file);
    for (int32_t i = 0; i < object_count; ++i) {
        Tv_Free_Memory(object_list[i].file_name);
        Tv_Free_Memory(object_list[i].object_name);
        Tv_Free_Memory(object_list[i].instance_name);
    }
    Tv_Free_Memory(object_list);
    lw_start_object_list();
}

// Row numbers are 16 bits wide. A scene with more objects ends here, with what has been read in place.
static bool list_is_full(const char* scene_file_name)
{
    if (object_count < most_objects) return false;
    lw_report(LW_ERROR, "Scene file '%s' has more than %d objects. Reading stops at line number %d.\n", scene_file_name,
              most_objects, line_num);
    return true;
}

// ---- instances -----------------------------------------------------------------------------------------------------

static void clear_pivot(const char* instance_name)
{
    Tv_Local_Axes* axes = nullptr;
    Tv_Inquire_Instance(instance_name, lw_tokens.localaxes, &axes, 0);
    if (!axes) return;
    for (int i = 0; i < 3; ++i) axes->axes_matrix[3][i] = 0;
    axes->origin_enabled = 0;
    Tv_Instance(instance_name, lw_tokens.localaxes, axes, 0);
}

// A null instance named after the token.
static void make_null_instance()
{
    char name[lw_name_size];
    Import_IO_MakeNameUnique(lw_tokens.instance, token_buffer, name);
    Tv_Add_Empty_Node(lw_tokens.instance, name, 0);
    Tv_Attach(lw_tokens.instance, name, lw_tokens.object, root_object_name, 0);
    Import_IO_SaveHandleName(lw_tokens.instance, name);
    lw_copy_text(current_instance_name, sizeof current_instance_name, name);
    lw_add_object_to_list(&object_count, nullptr, name, nullptr, &object_list);
}

// In the place of an object that isn't there, so that the rows keep the numbers that the file counts by.
static void make_null_in_place_of_object()
{
    lw_copy_text(token_buffer, lws_token_size, mapped_name);
    free_load_names();
    make_null_instance();
}

// One more instance of an object that has been read. The row is a copy: adding one may move the list.
static void reuse_object(lw_object_info row)
{
    char name[lw_name_size];
    Import_IO_MakeNameUnique(lw_tokens.instance, row.object_name, name);
    Tv_Add_Instance(lw_tokens.instance, name, lw_tokens.object, row.object_name, 0);
    Tv_Attach(lw_tokens.instance, name, lw_tokens.object, root_object_name, 0);
    clear_pivot(name);
    lw_copy_text(current_instance_name, sizeof current_instance_name, name);
    lw_copy_txtrproj_info(row.instance_name, current_instance_name);
    lw_add_object_to_list(&object_count, mapped_name, name, row.object_name, &object_list);
    free_load_names();
}

// ---- keywords ------------------------------------------------------------------------------------------------------

int16_t lw_add_bone()
{
    lw_apply_transforms(current_instance_name);
    current_instance_name[0] = 0; // bones aren't imported: what is said of this one addresses nothing
    return 1;
}

int16_t lw_add_null_object(const char* scene_file_name)
{
    lw_apply_transforms(current_instance_name);
    lw_drop_motion(&scn->object_motion);
    if (!lw_get_name_operand() || list_is_full(scene_file_name)) return 0;
    make_null_instance();
    return 1;
}

// Reads the open file. What failed leaves no row; what held nothing to build leaves a null instance.
static void read_object(std::FILE* file)
{
    char instance_name[lw_name_size] = "";
    char object_name[lw_name_size] = "";
    lw_infile = file;
    const int16_t failed = read_LWOB(file, candidate, 1, instance_name, object_name, root_object_name, 1);
    const bool built = instance_name[0] || object_name[0];
    if (!failed && built) {
        lw_copy_text(current_instance_name, sizeof current_instance_name, instance_name);
        clear_pivot(current_instance_name);
        lw_add_object_to_list(&object_count, mapped_name, current_instance_name, object_name, &object_list);
    }
    lw_close_stream(&lw_infile);
    if (!failed && !built)
        make_null_in_place_of_object();
    else
        free_load_names();
}

int16_t lw_load_object(const char* scene_file_name)
{
    lw_apply_transforms(current_instance_name);
    lw_drop_motion(&scn->object_motion);
    if (!lw_get_name_operand() || list_is_full(scene_file_name)) return 0;
    Import_IO_Copy_String(&mapped_name, token_buffer);
    const int16_t separators = convert_lw_filename(&mapped_name, 0, 0);
    if (!mapped_name) no_memory_for_names();
    const int32_t row = lws_find_name(&rows_by_file, mapped_name);
    if (row >= 0) {
        reuse_object(object_list[row]);
        return 1;
    }
    std::FILE* const file = lw_open_object_file(token_buffer, std::max<int16_t>(separators, 1), &candidate);
    if (file) {
        read_object(file);
        return 1;
    }
    lw_report(
        LW_ERROR,
        "Could not locate Lightwave object file '%s' referenced at line number %d of scene file '%s'. Adding null "
        "object instead.\n",
        mapped_name, line_num, scene_file_name);
    make_null_in_place_of_object();
    return 1;
}

int16_t lw_read_parent_object()
{
    int64_t number;
    if (!lws_get_long(&number)) return 0;
    if (current_instance_name[0] && object_count > 0)
        object_list[object_count - 1].parent_index = static_cast<int16_t>(static_cast<uint64_t>(number) - 1);
    return 1;
}

int16_t lw_read_pivot_point()
{
    if (!current_instance_name[0]) return 1;
    Tv_Local_Axes* axes = nullptr;
    Tv_Inquire_Instance(current_instance_name, lw_tokens.localaxes, &axes, 0);
    float pivot[3];
    if (!lws_get_float(&pivot[0]) || !lws_get_float(&pivot[1]) || !lws_get_float(&pivot[2])) return 0;
    if (!axes) return 1;
    axes->axes_matrix[3][0] = pivot[0];
    axes->axes_matrix[3][1] = pivot[1];
    axes->axes_matrix[3][2] = -pivot[2];
    axes->origin_enabled = 1;
    Tv_Instance(current_instance_name, lw_tokens.localaxes, axes, 0);
    return 1;
}
