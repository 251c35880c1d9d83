// The layers of a surface: one toolkit texture and one layer for each texture that can be sent.
#pragma once
#include "lib/import/lw/lw2tv/texture_records.h"

// Sends nothing without a record or without a projection in it: a surface whose textures are all procedural has no
// frame to lay them in. Reflection textures are never sent.
void lw_output_texture_layers(const char* surface_name, const LW_Texture_Struct* list,
                              const LW_Surface_Info* surface_info);
