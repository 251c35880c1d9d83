#include "lib/import/lw/lw2tv/procedural_textures.h"

#include <cmath>

#include "lib/import/lw/base/tokens.h"
#include "lib/toolkit/vc4_tv.h"

struct Procedural {
    const char* name; // the toolkit's
    float color1[3], color2[3], param1, param2;
};

static void set_color(float* color, const float* from)
{
    for (int i = 0; i < 3; ++i) color[i] = from[i];
}

// False for a word that the toolkit has nothing for, not even "off".
static bool choose_procedural(const LW_Texture_Struct* texture, const float* surface_color, Procedural* chosen)
{
    *chosen = {"off", {1, 1, 1}, {0, 0, 0}, 1.0f, 1.0f};
    switch (texture->procedural_type) {
    case LW_PROCEDURAL_CHECKERBOARD:
        chosen->name = "checker";
        set_color(chosen->color2, surface_color);
        return true;
    case LW_PROCEDURAL_GRID:
        chosen->name = "grid";
        set_color(chosen->color1, surface_color);
        set_color(chosen->color2, texture->color);
        chosen->param1 = texture->param[0] / 2.0f;
        return true;
    case LW_PROCEDURAL_FRACTAL_NOISE:
        chosen->name = "rawturbulence";
        set_color(chosen->color1, texture->color);
        set_color(chosen->color2, surface_color);
        chosen->param1 = 1.6f;
        chosen->param2 = 0.4f;
        return true;
    case LW_PROCEDURAL_RIPPLES:
    case LW_PROCEDURAL_FRACTAL_BUMPS:
    case LW_PROCEDURAL_CRUMPLE: return false;
    default: return true;
    }
}

void LW_Output_Procedural_Texture(const char* surface_name, const char* layer_name, const char* texture_name,
                                  const LW_Texture_Struct* texture)
{
    float surface_color[3] = {1, 1, 1};
    Tv_Inquire_Surface(surface_name, lw_tokens.color, surface_color, 0);
    Procedural chosen;
    if (!choose_procedural(texture, surface_color, &chosen)) return;
    Tv_Texture(texture_name, lw_tokens.procedural,                //
               lw_tokens.name, chosen.name, 1,                    //
               lw_tokens.color1, lw_tokens.rgb, chosen.color1, 1, //
               lw_tokens.color2, lw_tokens.rgb, chosen.color2, 1, //
               lw_tokens.param1, &chosen.param1, 1,               //
               lw_tokens.param2, &chosen.param2, 1, 0);
    Tv_Surface(surface_name, lw_tokens.texture, layer_name, lw_tokens.texturelink, texture_name, //
               lw_tokens.scale, texture->size, lw_tokens.translate, texture->center,             //
               lw_tokens.worldspace, lw_tokens.enabled, texture->world_coords ? lw_tokens.on : lw_tokens.off, 0);
}

// 1 / param, or 1 where that would be no sensible number.
static float reciprocal(float param)
{
    return std::fabs(static_cast<double>(param)) > 0.000001 ? 1.0f / param : 1.0f;
}

void LW_Output_UV_Scale_Values(const char* surface_name, const char* layer_name, const LW_Texture_Struct* texture,
                               int16_t projection)
{
    if (!texture->image_name || texture->procedural_type != -1) return;
    float uscale = 1.0f, vscale = 1.0f;
    if (projection == 1 || projection == 2) uscale = reciprocal(texture->param[0]);
    if (projection == 1) vscale = reciprocal(texture->param[1]);
    Tv_Surface(surface_name, lw_tokens.texture, layer_name, lw_tokens.uscale, &uscale, lw_tokens.vscale, &vscale, 0);
}
