// Reads one SURF chunk and sends the surface, its textures and its layers to the toolkit.
#pragma once
#include <cstdint>
#include <cstdio>

#include "lib/import/lw/lw2tv/surface_info.h"

// The stream stands after the surface's name, chunk_remaining bytes before the chunk's end. surface_info may be null:
// then nothing of the textures is sent. 0, or 1 when the sub-chunks don't end with the chunk, the file ends first, the
// stream has an error, or there is no memory; nothing is reported here.
int16_t LW_Parse_Surface_Definition(std::FILE* fp, uint32_t chunk_remaining, const char* surface_name,
                                    LW_Surface_Info* surface_info);

// Frees what a fatal exit has left of a surface.
void lw_release_surface_data();
