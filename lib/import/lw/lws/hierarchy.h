// Parent numbers of a scene's objects become links in the toolkit, once, when the file has ended.
#pragma once
#include <cstdint>

#include "lib/import/lw/lws/object_list.h"

// Changes rows: a parent that holds geometry is wrapped in a group, which the row stands for from then on.
void lw_update_obj_hierarchy(int16_t count, lw_object_info* rows);
