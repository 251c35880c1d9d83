// A layer's procedural texture, and the scale of its image.
#pragma once
#include "lib/import/lw/lw2tv/texture_records.h"

// Makes the toolkit's procedural for a texture whose procedural_type isn't -1, and places it on the layer. Three of the
// words have a counterpart, seven go out as "off", and for "Ripples", "Fractal Bumps" and "Crumple" nothing is made.
void LW_Output_Procedural_Texture(const char* surface_name, const char* layer_name, const char* texture_name,
                                  const LW_Texture_Struct* texture);

// The repeats of an image on a spherical or cylindrical surface; 1 and 1 elsewhere. Nothing for what isn't an image.
void LW_Output_UV_Scale_Values(const char* surface_name, const char* layer_name, const LW_Texture_Struct* texture,
                               int16_t projection);
