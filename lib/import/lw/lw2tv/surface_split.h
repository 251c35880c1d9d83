// An object of several surfaces becomes one mesh for each surface, hung under an empty parent: a texture projection
// lies on an instance, so each surface needs one of its own.
#pragma once
#include <cstdint>

#include "lib/import/lw/lw2tv/object_data.h"

// The names that go out, where not null, are the parent's; buffers of 256.
void lw_split_by_surface(lw_object_data* object, char* instance_name_out, char* object_name_out,
                         const char* parent_name, int16_t add_to_imported_list);

// Frees what a fatal exit has left of a split.
void lw_release_split_data();
