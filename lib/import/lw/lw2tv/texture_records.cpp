#include "lib/import/lw/lw2tv/texture_records.h"

#include <cstring>

#include "lib/import/lw/base/path_mapping.h"
#include "lib/import/lw/base/report.h"
#include "lib/import/lw/lw2tv/binary_input.h"
#include "lib/toolkit/vc4_tv.h"

void LW_Init_Texture_Struct(LW_Texture_Struct* texture)
{
    const int16_t channel = texture->channel;
    LW_Texture_Struct* const next = texture->next;
    *texture = {};
    texture->channel = channel;
    texture->next = next;
    texture->opacity = 1.0f;
    texture->procedural_type = -1;
    texture->wrap_x = texture->wrap_y = 1;
}

LW_Texture_Struct* LW_Add_New_Texture_Struct(LW_Texture_Struct** list)
{
    auto* const texture = static_cast<LW_Texture_Struct*>(Tv_Alloc_Memory(0, 1, sizeof(LW_Texture_Struct)));
    if (!texture) return nullptr;
    LW_Init_Texture_Struct(texture);
    while (*list) list = &(*list)->next;
    *list = texture;
    return texture;
}

static void free_strings(LW_Texture_Struct* texture)
{
    Tv_Free_Memory(texture->description);
    Tv_Free_Memory(texture->image_name);
}

void lw_free_texture_list(LW_Texture_Struct** list)
{
    while (*list) {
        LW_Texture_Struct* const texture = *list;
        *list = texture->next;
        free_strings(texture);
        Tv_Free_Memory(texture);
    }
}

static void read_image_name(std::FILE* fp, int32_t remaining, LW_Texture_Struct* texture)
{
    get_lw_string_name(fp, &texture->image_name, &remaining);
    convert_lw_filename(&texture->image_name, 0, 1);
    if (!texture->image_name || std::strcmp(texture->image_name, "(none)") != 0) return;
    Tv_Free_Memory(texture->image_name);
    texture->image_name = nullptr;
}

static void read_wrap(std::FILE* fp, LW_Texture_Struct* texture)
{
    texture->wrap_x = static_cast<uint8_t>(LW_GET_U2(fp) & 2);
    texture->wrap_y = static_cast<uint8_t>(LW_GET_U2(fp) & 2);
}

static void read_flags(std::FILE* fp, LW_Texture_Struct* texture)
{
    const uint16_t flags = LW_GET_U2(fp);
    texture->texture_flag = flags;
    texture->x_axis = flags & 0x01 ? 1 : 0;
    texture->y_axis = flags & 0x02 ? 1 : 0;
    texture->z_axis = flags & 0x04 ? 1 : 0;
    texture->world_coords = flags & 0x08 ? 1 : 0;
    texture->negative_image = flags & 0x10 ? 1 : 0;
    texture->pixel_blending = flags & 0x20 ? 1 : 0;
    texture->antialiasing = flags & 0x40 ? 1 : 0;
}

static void read_opacity(std::FILE* fp, LW_Texture_Struct* texture)
{
    get_FLOAT(fp, 1, &texture->opacity);
    if (texture->opacity > 1.0f) texture->opacity = 1.0f;
    if (texture->opacity < 0.0f) texture->opacity = 0.0f;
}

static void read_dropped_string(std::FILE* fp, int32_t remaining)
{
    char* text = nullptr;
    get_lw_string_name(fp, &text, &remaining);
    Tv_Free_Memory(text);
}

static void read_dropped_float(std::FILE* fp)
{
    float value = 0;
    get_FLOAT(fp, 1, &value);
}

// A sub-chunk that refines `texture`. False for any other.
static bool read_refinement(std::FILE* fp, uint32_t id, uint16_t size, LW_Texture_Struct* texture)
{
    switch (id) {
    case lw_id("TIMG"): read_image_name(fp, size, texture); break;
    case lw_id("TWRP"): read_wrap(fp, texture); break;
    case lw_id("TFLG"): read_flags(fp, texture); break;
    case lw_id("TSIZ"): get_FLOAT(fp, 3, texture->size); break;
    case lw_id("TCTR"):
        get_FLOAT(fp, 3, texture->center);
        texture->center[2] = -texture->center[2];
        break;
    case lw_id("TFAL"): get_FLOAT(fp, 3, texture->falloff); break;
    case lw_id("TVEL"): get_FLOAT(fp, 3, texture->velocity); break;
    case lw_id("TCLR"): lw_get_color(fp, texture->color); break;
    case lw_id("TVAL"): texture->intensity = lw_get_fraction(fp); break;
    case lw_id("TAMP"): get_FLOAT(fp, 1, &texture->amplitude); break;
    case lw_id("TFRQ"): texture->num_frequencies = static_cast<int16_t>(LW_GET_U2(fp)); break;
    case lw_id("TSP0"):
    case lw_id("TFP0"): get_FLOAT(fp, 1, &texture->param[0]); break;
    case lw_id("TSP1"):
    case lw_id("TFP1"): get_FLOAT(fp, 1, &texture->param[1]); break;
    case lw_id("TSP2"):
    case lw_id("TFP2"): get_FLOAT(fp, 1, &texture->param[2]); break;
    case lw_id("TIP0"): texture->param[0] = lw_get_fraction(fp); break;
    case lw_id("TIP1"): texture->param[1] = lw_get_fraction(fp); break;
    case lw_id("TIP2"): texture->param[2] = lw_get_fraction(fp); break;
    case lw_id("TOPC"): read_opacity(fp, texture); break;
    case lw_id("TAAS"): read_dropped_float(fp); break;
    case lw_id("TALP"): read_dropped_string(fp, size); break;
    default: return false;
    }
    return true;
}

static int16_t channel_of(uint32_t id)
{
    switch (id) {
    case lw_id("CTEX"): return LW_CHANNEL_COLOR;
    case lw_id("DTEX"): return LW_CHANNEL_DIFFUSE;
    case lw_id("STEX"): return LW_CHANNEL_SPECULAR;
    case lw_id("RTEX"): return LW_CHANNEL_REFLECTION;
    case lw_id("TTEX"): return LW_CHANNEL_TRANSPARENCY;
    case lw_id("LTEX"): return LW_CHANNEL_LUMINOUS;
    case lw_id("BTEX"): return LW_CHANNEL_BUMP;
    default: return -1;
    }
}

lw_sub_chunk_result lw_read_texture_sub_chunk(std::FILE* fp, uint32_t id, uint16_t size, LW_Texture_Struct** list,
                                              LW_Texture_Struct** current)
{
    const int16_t channel = channel_of(id);
    if (channel >= 0) {
        LW_Texture_Struct* const texture = LW_Add_New_Texture_Struct(*current ? current : list);
        if (!texture) return LW_SUB_CHUNK_FAILED;
        int32_t remaining = size;
        get_lw_string_name(fp, &texture->description, &remaining);
        texture->channel = channel;
        *current = texture;
        return LW_SUB_CHUNK_READ;
    }
    LW_Texture_Struct nobody = {}; // takes what comes before the first texture
    LW_Init_Texture_Struct(&nobody);
    const bool known = read_refinement(fp, id, size, *current ? *current : &nobody);
    free_strings(&nobody);
    return known ? LW_SUB_CHUNK_READ : LW_SUB_CHUNK_UNKNOWN;
}

// The place of `word` among `count` words, or -1. A record without memory for its word has a null one.
static int16_t find_word(const char* word, const char* const* words, int16_t count)
{
    for (int16_t i = 0; word && i < count; ++i) {
        if (std::strcmp(word, words[i]) == 0) return i;
    }
    return -1;
}

static int16_t procedural_type_of(const char* word)
{
    static const char* const words[] = {"Checkerboard", "Grid",          "Dots",       "Marble", "Wood",
                                        "Underwater",   "Fractal Noise", "Bump Array", "Crust",  "Veins",
                                        "Ripples",      "Fractal Bumps", "Crumple"};
    return find_word(word, words, sizeof words / sizeof *words);
}

static int16_t projection_of(const char* word)
{
    static const char* const words[] = {"Planar Image Map", "Spherical Image Map", "Cylindrical Image Map",
                                        "Cubic Image Map"};
    return find_word(word, words, sizeof words / sizeof *words);
}

void lw_classify_textures(LW_Texture_Struct* list, LW_Surface_Info* surface_info)
{
    surface_info->x_axis_flag = list ? list->x_axis : 0;
    surface_info->y_axis_flag = list ? list->y_axis : 0;
    surface_info->z_axis_flag = list ? list->z_axis : 0;
    surface_info->world_coords_flag = list ? list->world_coords : 0;
    for (LW_Texture_Struct* texture = list; texture; texture = texture->next) {
        texture->procedural_type = procedural_type_of(texture->description);
        if (texture->procedural_type >= 0) break;
    }
    surface_info->projection = -1;
    for (const LW_Texture_Struct* texture = list; texture; texture = texture->next) {
        const int16_t projection = projection_of(texture->description);
        if (projection < 0) continue;
        surface_info->projection = projection;
        std::memcpy(surface_info->texture_center, texture->center, sizeof texture->center);
        std::memcpy(surface_info->texture_size, texture->size, sizeof texture->size);
        surface_info->has_projection = 1;
        break;
    }
}

static void dump_triple(const char* what, const float* value)
{
    lw_debug_printf("\t\t\tTexture's %s = (%g, %g, %g)\n", what, static_cast<double>(value[0]),
                    static_cast<double>(value[1]), static_cast<double>(value[2]));
}

static void dump_texture(const LW_Texture_Struct* texture)
{
    static const char* const headings[] = {"Color",       "Diffuse",  "Specular", "Reflection",
                                           "Tranparency", "Luminous", "Bump"};
    lw_debug_printf("\t\t%s texture info:\n", headings[texture->channel]);
    lw_debug_printf("\t\t\tTexture description = %s\n", texture->description ? texture->description : "");
    if (texture->image_name) lw_debug_printf("\t\t\tImage filename = %s\n", texture->image_name);
    dump_triple("color", texture->color);
    dump_triple("size", texture->size);
    dump_triple("center", texture->center);
    dump_triple("falloff", texture->falloff);
    dump_triple("velocity", texture->velocity);
    lw_debug_printf("\t\t\tIntensity = %g\n", static_cast<double>(texture->intensity));
    lw_debug_printf("\t\t\tAmplitude = %g\n", static_cast<double>(texture->amplitude));
    lw_debug_printf("\t\t\tNumber of frequencies/wave sources = %d\n", texture->num_frequencies);
    for (int i = 0; i < 3; ++i) {
        lw_debug_printf("\t\t\tParameter %d = %g\n", i + 1, static_cast<double>(texture->param[i]));
    }
    lw_debug_printf("\t\t\tWrap X flag = %d\n", texture->wrap_x);
    lw_debug_printf("\t\t\tWrap Y flag = %d\n", texture->wrap_y);
    lw_debug_printf("\t\t\tX axis flag = %d\n", texture->x_axis);
    lw_debug_printf("\t\t\tY axis flag = %d\n", texture->y_axis);
    lw_debug_printf("\t\t\tZ axis flag = %d\n", texture->z_axis);
    lw_debug_printf("\t\t\tWorld coordinates flag = %d\n", texture->world_coords);
    lw_debug_printf("\t\t\tNegative image flag = %d\n", texture->negative_image);
    lw_debug_printf("\t\t\tPixel blending flag = %d\n", texture->pixel_blending);
    lw_debug_printf("\t\t\tAntialiasing flag = %d\n", texture->antialiasing);
    lw_debug_printf("\t\t\tTexture flag = 0x%x\n", texture->texture_flag);
}

void lw_dump_textures(const LW_Texture_Struct* list, const char* surface_name)
{
    if (!list || !lw_debug_is_on()) return;
    lw_debug_printf("\tTexture descriptions for surface '%s':\n", surface_name);
    for (; list; list = list->next) dump_texture(list);
}
