#include "lib/import/lw/lws/backdrop.h"

#include "lib/import/lw/base/path_mapping.h"
#include "lib/import/lw/base/report.h"
#include "lib/import/lw/base/tokens.h"
#include "lib/import/lw/lws/scene_numbers.h"
#include "lib/import/lw/lws/scene_parameters.h"
#include "lib/import/lw/lws/tokenizer.h"
#include "lib/services/import_io.h"
#include "lib/toolkit/vc4_tv.h"

static constexpr const char* background_texture = "TAVRIN___BG_TEXTURE_NAME";
static constexpr const char* background_surface = "TAVRIN___BG_SURFACE_NAME";

int16_t lw_read_ambient_color()
{
    float color[3];
    if (!lws_get_color(color)) return 0;
    Tv_Light("defaultambient", lw_tokens.color, lw_tokens.rgb, color, 0);
    return 1;
}

int16_t lw_read_ambient_intensity()
{
    float intensity;
    if (!lws_get_float(&intensity)) return 0;
    Tv_Light("defaultambient", lw_tokens.intensity, &intensity, 0);
    return 1;
}

int16_t lw_read_background_image()
{
    if (!lw_get_next_token()) return 0;
    Import_IO_Copy_String(&scn->bg_image, token_buffer);
    convert_lw_filename(&scn->bg_image, 0, 1);
    if (!scn->bg_image) lw_report_fatal("Out of memory while copying the name of the background image");
    return 1;
}

static void set_background_image()
{
    int32_t image_type = 0;
    Tv_Determine_Image_File_Type(scn->bg_image, &image_type);
    Tv_Texture(background_texture, lw_tokens.image, lw_tokens.textureimage, image_type, scn->bg_image, 1,
               lw_tokens.filter, lw_tokens.mipmap, 1, lw_tokens.wrapu, lw_tokens.enabled, lw_tokens.off, 1,
               lw_tokens.wrapv, lw_tokens.enabled, lw_tokens.off, 1, 0);
    Tv_Surface(background_surface, lw_tokens.texture, "layer_1", lw_tokens.enabled, lw_tokens.on, lw_tokens.texturelink,
               background_texture, 1, 0);
    Tv_Background(lw_tokens.colorscheme, lw_tokens.surfacelink, background_surface, 0);
}

static bool is_given(const float color[3])
{
    return color[0] != -1.0f;
}

static void set_background_color(const float color[3])
{
    Tv_Background(lw_tokens.colorscheme, lw_tokens.color, 0);
    if (is_given(color)) Tv_Background(lw_tokens.colorscheme, lw_tokens.color, lw_tokens.rgb, color, 0);
}

static void set_background_gradient()
{
    const float position = 0.5f;
    Tv_Background(lw_tokens.colorscheme, lw_tokens.gradient, lw_tokens.horiztop, lw_tokens.enabled, lw_tokens.on,
                  lw_tokens.horizbot, lw_tokens.enabled, lw_tokens.on, lw_tokens.horizpos, &position, 0);
    const struct {
        int32_t word;
        const float* color;
    } bands[] = {{lw_tokens.color1, scn->zenith_color},
                 {lw_tokens.color2, scn->sky_color},
                 {lw_tokens.color3, scn->ground_color},
                 {lw_tokens.color4, scn->nadir_color}};
    for (const auto& band : bands)
        if (is_given(band.color))
            Tv_Background(lw_tokens.colorscheme, lw_tokens.gradient, band.word, lw_tokens.rgb, band.color, 0);
}

void lw_update_background()
{
    if (scn->bg_image)
        set_background_image();
    else if (scn->solid_backdrop == 1)
        set_background_color(scn->backdrop_color);
    else if (scn->zenith_only == 1)
        set_background_color(scn->zenith_color);
    else
        set_background_gradient();
}
