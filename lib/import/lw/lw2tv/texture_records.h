// The textures of one surface while its SURF chunk is read: sub-chunks that name a channel start a record, and T...
// sub-chunks refine the newest one.
#pragma once
#include <cstdint>
#include <cstdio>

#include "lib/import/lw/lw2tv/surface_info.h"

enum lw_texture_channel : int16_t {
    LW_CHANNEL_COLOR,
    LW_CHANNEL_DIFFUSE,
    LW_CHANNEL_SPECULAR,
    LW_CHANNEL_REFLECTION,
    LW_CHANNEL_TRANSPARENCY,
    LW_CHANNEL_LUMINOUS,
    LW_CHANNEL_BUMP
};

// The procedural words, in the order of procedural_type.
enum lw_procedural_type : int16_t {
    LW_PROCEDURAL_CHECKERBOARD,
    LW_PROCEDURAL_GRID,
    LW_PROCEDURAL_DOTS,
    LW_PROCEDURAL_MARBLE,
    LW_PROCEDURAL_WOOD,
    LW_PROCEDURAL_UNDERWATER,
    LW_PROCEDURAL_FRACTAL_NOISE,
    LW_PROCEDURAL_BUMP_ARRAY,
    LW_PROCEDURAL_CRUST,
    LW_PROCEDURAL_VEINS,
    LW_PROCEDURAL_RIPPLES,
    LW_PROCEDURAL_FRACTAL_BUMPS,
    LW_PROCEDURAL_CRUMPLE
};

struct LW_Texture_Struct {
    int16_t channel;  // lw_texture_channel
    char* image_name; // owned, mapped; null: none
    float size[3];
    float center[3]; // Z negated already
    float falloff[3];
    float velocity[3];
    float color[3];
    float intensity;
    float amplitude;
    int16_t num_frequencies;
    float opacity; // 0 to 1
    float param[3];
    int16_t procedural_type; // of lw_procedural_type; -1: none, or not the surface's first
    uint16_t texture_flag;   // the TFLG word
    uint8_t wrap_x, wrap_y;  // not 0: wraps. 1 at the start, 0 or 2 after a TWRP
    uint8_t x_axis, y_axis, z_axis, world_coords, negative_image, pixel_blending, antialiasing;
    char* description; // owned; the type word
    LW_Texture_Struct* next;
};

// A new record at the end of *list, or null when there is no memory.
LW_Texture_Struct* LW_Add_New_Texture_Struct(LW_Texture_Struct** list);

// The values of a new record; leaves `next` and `channel` alone.
void LW_Init_Texture_Struct(LW_Texture_Struct* texture);

// Frees every record of *list and makes it empty.
void lw_free_texture_list(LW_Texture_Struct** list);

enum lw_sub_chunk_result : int16_t {
    LW_SUB_CHUNK_READ,
    LW_SUB_CHUNK_UNKNOWN, // not a texture's; nothing was read
    LW_SUB_CHUNK_FAILED   // no memory for a record
};

// Reads the payload of a texture sub-chunk; id as lw_id gives it. *current is the record that T... sub-chunks refine,
// null before the first.
lw_sub_chunk_result lw_read_texture_sub_chunk(std::FILE* fp, uint32_t id, uint16_t size, LW_Texture_Struct** list,
                                              LW_Texture_Struct** current);

// Finds the surface's one procedural texture and its one projection, and fills the record.
void lw_classify_textures(LW_Texture_Struct* list, LW_Surface_Info* surface_info);

// Writes the list to the debug file, if there is one.
void lw_dump_textures(const LW_Texture_Struct* list, const char* surface_name);
