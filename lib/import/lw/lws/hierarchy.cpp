#include "lib/import/lw/lws/hierarchy.h"

#include "lib/import/lw/base/bounded_text.h"
#include "lib/import/lw/base/option_variables.h"
#include "lib/import/lw/base/report.h"
#include "lib/import/lw/base/tokens.h"
#include "lib/services/import_io.h"
#include "lib/toolkit/vc4_tv.h"

// What an instance hangs under. The name is a copy: the toolkit's own may go when the instance is detached.
struct Parent {
    int32_t kind; // token; 0 for a detached instance, which has no name either
    bool has_name;
    char name[lw_name_size];
};

static void inquire_parent(const char* instance, Parent* parent)
{
    const char* name = nullptr;
    parent->kind = 0;
    Tv_Inquire_Instance(instance, lw_tokens.parent, &parent->kind, &name, 0);
    parent->has_name = name != nullptr;
    lw_copy_text(parent->name, sizeof parent->name, name);
}

static const char* name_of(const Parent* parent)
{
    return parent->has_name ? parent->name : nullptr;
}

// The pivot goes up to the group; the instance keeps axes whose origin is its own zero.
static void move_pivot(const char* instance, const char* group)
{
    Tv_Local_Axes* axes = nullptr;
    Tv_Inquire_Instance(instance, lw_tokens.localaxes, &axes, 0);
    if (!axes || !axes->origin_enabled) return;
    Tv_Instance(group, lw_tokens.localaxes, axes, 0);
    Tv_Matrix_Identity(axes->axes_matrix);
    axes->axes_scale = 1.0f;
    axes->axes_flag_a = axes->origin_enabled = axes->axes_flag_c = 1;
    Tv_Instance(instance, lw_tokens.localaxes, axes, 0);
}

// A new group takes the instance's place, matrix, channels and pivot; the instance hangs under it as the carrier of the
// geometry.
static void wrap(lw_object_info* row)
{
    const char* const instance = row->instance_name;
    float matrix[4][4];
    char group[lw_name_size];
    Parent parent;
    Tv_Matrix_Identity(matrix); // kept where the toolkit knows no such instance
    inquire_parent(instance, &parent);
    Tv_Inquire_Instance(instance, lw_tokens.matrix, matrix, 0);
    Tv_Detach(lw_tokens.instance, instance, 0);
    Import_IO_MakeNameUnique(lw_tokens.instance, instance, group);
    Tv_Add_Empty_Node(lw_tokens.instance, group, 0);
    Tv_Attach(lw_tokens.instance, group, parent.kind, name_of(&parent), 0);
    Tv_Attach(lw_tokens.instance, instance, lw_tokens.instance, group, 0);
    Tv_Instance(instance, lw_tokens.resetmatrix, 0);
    Tv_Transform(lw_tokens.instance, group, lw_tokens.postmultiply, lw_tokens.matrix, matrix, 0);
    if (!lw_import_keyframe0_only) Tv_Instance(instance, lw_tokens.moveallchannels, lw_tokens.instance, group, 0);
    move_pivot(instance, group);
    row->no_master_object = 1;
    row->object_is_empty = 0;
    Import_IO_Copy_String(&row->instance_name, group);
}

// An empty node that has lost its last child is of no use to anybody. No scene comes here with a toolkit that says
// "below an object" of what hangs at the root; one that names the root's instance instead would leave it behind.
static void remove_if_unused(const char* node)
{
    char* master = nullptr;
    int32_t children = 0;
    Tv_Inquire_Instance(node, lw_tokens.masterobject, &master, 1, lw_tokens.numchildren, &children, 0);
    if (children != 0 || master) return;
    Tv_Detach(lw_tokens.instance, node, 0);
    Tv_Remove(lw_tokens.instance, node, 0);
}

// The child keeps its local matrix: read before it is detached and set again when it hangs in its place.
static void link(const char* child, const char* parent_name)
{
    float matrix[4][4];
    Parent old_parent;
    Tv_Matrix_Identity(matrix);
    Tv_Inquire_Instance(child, lw_tokens.matrix, matrix, 0);
    inquire_parent(child, &old_parent);
    Tv_Detach(lw_tokens.instance, child, 0);
    if (old_parent.kind == lw_tokens.instance) remove_if_unused(old_parent.name);
    Tv_Attach(lw_tokens.instance, child, lw_tokens.instance, parent_name, 0);
    Tv_Instance(child, lw_tokens.resetmatrix, 0);
    Tv_Transform(lw_tokens.instance, child, lw_tokens.postmultiply, lw_tokens.matrix, matrix, 0);
}

void lw_update_obj_hierarchy(int16_t count, lw_object_info* rows)
{
    for (int32_t i = 0; i < count; ++i) {
        lw_object_info* const child = &rows[i];
        if (child->parent_index == -1 || !child->instance_name) continue;
        if (child->parent_index < -1 || child->parent_index >= count) {
            lw_report(LW_ERROR, "A 'parent' number (%d) was found which exceeds the number of imported files (%d).\n",
                      child->parent_index + 1, count);
            Tv_Detach(lw_tokens.instance, child->instance_name, 0);
            Tv_Attach(lw_tokens.instance, child->instance_name, lw_tokens.instance, "world", 0);
            continue;
        }
        lw_object_info* const parent = &rows[child->parent_index];
        if (!parent->instance_name) continue;
        if (parent->object_is_empty || !parent->no_master_object) wrap(parent);
        if (!parent->instance_name || !child->instance_name) continue; // no memory for the group's name
        link(child->instance_name, parent->instance_name);
    }
}
