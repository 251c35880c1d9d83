// The frame in which an instance's textures lie: from a surface's record to the instance, or from instance to instance.
#pragma once
#include "lib/import/lw/lw2tv/surface_info.h"

// Sends nothing for a null record, a record without a projection, and a planar or cylindrical one with no axis flag:
// the axis is the first texture's and the projection the first image map's, and where they part there is no frame.
void UpdateInstanceWithSurfaceInfo(const char* instance_name, const LW_Surface_Info* surface_info);

// Gives a further instance of an object the frame of an earlier one, whatever that has.
void lw_copy_txtrproj_info(const char* source_instance, const char* new_instance);
