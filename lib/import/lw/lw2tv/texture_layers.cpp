#include "lib/import/lw/lw2tv/texture_layers.h"

#include "lib/import/lw/base/bounded_text.h"
#include "lib/import/lw/base/tokens.h"
#include "lib/import/lw/lw2tv/procedural_textures.h"
#include "lib/services/import_io.h"
#include "lib/toolkit/vc4_tv.h"

struct Layer {
    const char* surface;
    char name[32];              // "layer 1"
    char texture[lw_name_size]; // the toolkit texture's unique name
    const LW_Texture_Struct* record;
    int32_t wrapu, wrapv; // tokens
};

static bool is_procedural(const LW_Texture_Struct* texture)
{
    return texture->procedural_type != -1;
}

// What the toolkit texture's name begins with; null for a texture that isn't sent. Colour, diffuse and luminous take
// procedurals; the others need an image, and are sent as procedurals only when an image stands on them as well.
static const char* prefix_of(const LW_Texture_Struct* texture)
{
    const bool has_image = texture->image_name != nullptr;
    const bool has_either = has_image || is_procedural(texture);
    switch (texture->channel) {
    case LW_CHANNEL_COLOR: return has_either ? "diffuse color: " : nullptr;
    case LW_CHANNEL_DIFFUSE: return has_either ? "diffuse intensity: " : nullptr;
    case LW_CHANNEL_LUMINOUS: return has_either ? "luminous color: " : nullptr;
    case LW_CHANNEL_BUMP: return has_image ? "bump: " : nullptr;
    case LW_CHANNEL_TRANSPARENCY: return has_image ? "trans: " : nullptr;
    case LW_CHANNEL_SPECULAR: return has_image ? "spec: " : nullptr;
    default: return nullptr;
    }
}

static float multiplier_of(const LW_Texture_Struct* texture)
{
    switch (texture->channel) {
    case LW_CHANNEL_COLOR: return is_procedural(texture) ? texture->intensity : 1.0f;
    case LW_CHANNEL_DIFFUSE:
    case LW_CHANNEL_TRANSPARENCY:
    case LW_CHANNEL_SPECULAR: return texture->intensity;
    case LW_CHANNEL_BUMP: return is_procedural(texture) ? texture->amplitude : 1.0f;
    default: return 1.0f;
    }
}

static void choose_wraps(Layer* layer, int16_t projection)
{
    layer->wrapu = layer->record->wrap_x ? lw_tokens.on : lw_tokens.off;
    layer->wrapv = layer->record->wrap_y ? lw_tokens.on : lw_tokens.off;
    if (projection == 1 || projection == 2) layer->wrapu = lw_tokens.on;
    if (projection == 1) layer->wrapv = lw_tokens.on;
}

static void make_procedural(Layer* layer, const char* prefix)
{
    const char* const description = layer->record->description;
    lw_format_text(layer->texture, sizeof layer->texture, "%s%s", prefix, description ? description : "");
    Import_IO_MakeNameUnique(lw_tokens.texture, layer->texture, layer->texture);
    LW_Output_Procedural_Texture(layer->surface, layer->name, layer->texture, layer->record);
}

static void make_image(Layer* layer, const char* prefix)
{
    const char* const image = layer->record->image_name;
    const bool wraps = layer->wrapu != lw_tokens.off || layer->wrapv != lw_tokens.off;
    lw_format_text(layer->texture, sizeof layer->texture, "%s%s%s", prefix, image, wraps ? " (wrap)" : "");
    Import_IO_MakeNameUnique(lw_tokens.texture, layer->texture, layer->texture);
    int32_t image_type = 0;
    Tv_Determine_Image_File_Type(image, &image_type);
    Tv_Texture(layer->texture, lw_tokens.image,                     //
               lw_tokens.textureimage, image_type, image, 1,        //
               lw_tokens.filter, lw_tokens.mipmap, 1,               //
               lw_tokens.wrapu, lw_tokens.enabled, layer->wrapu, 1, //
               lw_tokens.wrapv, lw_tokens.enabled, layer->wrapv, 1, 0);
}

static void link_texture(const Layer* layer)
{
    Tv_Surface(layer->surface, lw_tokens.texture, layer->name, lw_tokens.texturelink, layer->texture, 1, 0);
}

static void send_channel(const Layer* layer)
{
    const LW_Texture_Struct* const record = layer->record;
    float multiplier = multiplier_of(record);
    float triple[3] = {multiplier, multiplier, multiplier};
    float opacity = record->opacity;
    float rest = 1.0f - opacity; // the weight of the surface's own value
    switch (record->channel) {
    case LW_CHANNEL_COLOR:
        link_texture(layer);
        Tv_Surface(layer->surface, lw_tokens.texture, layer->name, //
                   lw_tokens.modulate, lw_tokens.color, lw_tokens.enabled, lw_tokens.on, lw_tokens.multiplier,
                   lw_tokens.color, triple, lw_tokens.colorblend, lw_tokens.diffuse, &opacity, 1, 0);
        break;
    case LW_CHANNEL_DIFFUSE:
        link_texture(layer);
        Tv_Surface(layer->surface, lw_tokens.texture, layer->name,                        //
                   lw_tokens.modulate, lw_tokens.color, lw_tokens.enabled, lw_tokens.off, //
                   lw_tokens.modulate, lw_tokens.diffuse, lw_tokens.enabled, lw_tokens.on, lw_tokens.multiplier,
                   lw_tokens.diffuse, triple, lw_tokens.mix, lw_tokens.diffuse, &rest, 1, 0);
        break;
    case LW_CHANNEL_LUMINOUS:
        link_texture(layer);
        Tv_Surface(layer->surface, lw_tokens.texture, layer->name,                        //
                   lw_tokens.modulate, lw_tokens.color, lw_tokens.enabled, lw_tokens.off, //
                   lw_tokens.modulate, lw_tokens.luminouscolor, lw_tokens.enabled, lw_tokens.on, lw_tokens.colorblend,
                   lw_tokens.luminous, &opacity, 1, 0);
        break;
    case LW_CHANNEL_BUMP: {
        float bump = multiplier / 4.0f;
        Tv_Surface(layer->surface, lw_tokens.texture, layer->name, lw_tokens.texturelink, layer->texture, //
                   lw_tokens.modulate, lw_tokens.color, lw_tokens.enabled, lw_tokens.off,                 //
                   lw_tokens.modulate, lw_tokens.bump, lw_tokens.enabled, lw_tokens.on,                   //
                   lw_tokens.multiplier, lw_tokens.bumpu, &bump, lw_tokens.multiplier, lw_tokens.bumpv, &bump, 1, 0);
        break;
    }
    case LW_CHANNEL_TRANSPARENCY:
        Tv_Surface(layer->surface, lw_tokens.texture, layer->name, lw_tokens.texturelink, layer->texture, //
                   lw_tokens.mix, lw_tokens.faceopacity, &rest,                                           //
                   lw_tokens.modulate, lw_tokens.color, lw_tokens.enabled, lw_tokens.off,                 //
                   lw_tokens.modulate, lw_tokens.faceopacity, lw_tokens.enabled, lw_tokens.on,            //
                   lw_tokens.modulate, lw_tokens.faceopacity, lw_tokens.invert, lw_tokens.enabled,
                   record->negative_image ? lw_tokens.off : lw_tokens.on, //
                   lw_tokens.multiplier, lw_tokens.faceopacity, &multiplier, 1, 0);
        break;
    case LW_CHANNEL_SPECULAR: {
        float metal = 1.0f;
        Tv_Surface(layer->surface, lw_tokens.model, lw_tokens.phong, lw_tokens.metal, &metal, 1,  //
                   lw_tokens.texture, layer->name, lw_tokens.texturelink, layer->texture,         //
                   lw_tokens.mix, lw_tokens.specular, &rest,                                      //
                   lw_tokens.modulate, lw_tokens.color, lw_tokens.enabled, lw_tokens.off,         //
                   lw_tokens.modulate, lw_tokens.reflectopacity, lw_tokens.enabled, lw_tokens.on, //
                   lw_tokens.multiplier, lw_tokens.reflectopacity, &multiplier, 1, 0);
        break;
    }
    default: break;
    }
}

void lw_output_texture_layers(const char* surface_name, const LW_Texture_Struct* list,
                              const LW_Surface_Info* surface_info)
{
    if (!surface_info || surface_info->projection < 0 || surface_info->projection > 3) return;
    int16_t layer_number = 1;
    for (const LW_Texture_Struct* texture = list; texture; texture = texture->next) {
        const char* const prefix = prefix_of(texture);
        if (!prefix) continue;
        Layer layer;
        layer.surface = surface_name;
        layer.record = texture;
        lw_format_text(layer.name, sizeof layer.name, "layer %d", layer_number);
        layer_number = static_cast<int16_t>(layer_number + 1);
        choose_wraps(&layer, surface_info->projection);
        if (is_procedural(texture)) {
            make_procedural(&layer, prefix);
        } else {
            make_image(&layer, prefix);
        }
        send_channel(&layer);
        LW_Output_UV_Scale_Values(surface_name, layer.name, texture, surface_info->projection);
    }
}
