// The objects of a scene: each file read once, null instances, parent numbers and pivots.
#pragma once
#include <cstdint>

#include "lib/import/lw/base/bounded_text.h"

// One object of the scene, in the order of the file.
struct lw_object_info {
    char* file_name;          // owned; the mapped name, by which a later reference finds the row. Null: a null instance
    char* object_name;        // owned; null for a null instance
    char* instance_name;      // owned; a group's once the row's instance has been wrapped in one
    int16_t object_is_empty;  // 1: the object holds no primitives
    int16_t no_master_object; // 1: the instance has no object
    int16_t parent_index;     // row, 0-based; -1 none. Anything else that isn't a row comes from a bad file
};

extern lw_object_info* object_list;
extern int16_t object_count;                     // 32767 at most
extern char current_instance_name[lw_name_size]; // what the keywords of an object address; empty: nothing
extern char root_object_name[lw_name_size];      // what every instance of the import hangs under

// Clears the above. The rows must have been freed.
void lw_start_object_list();

// Makes the root object and its instance, named after the file.
void lw_make_scene_root(const char* file_name);

// The keywords of these names. 0 when the read has failed.
int16_t lw_add_bone();
int16_t lw_add_null_object(const char* scene_file_name);
int16_t lw_load_object(const char* scene_file_name);
int16_t lw_read_parent_object();
int16_t lw_read_pivot_point();

// Adds a row and fills it; the three strings are copied and may be null. Level 5 when there is no memory.
void lw_add_object_to_list(int16_t* count, const char* file_name, const char* instance_name, const char* object_name,
                           lw_object_info** list);

// Gives back the rows with their strings, and what an object's read has left.
void lw_free_object_list();
