#include "lib/import/lw/lw2tv/surface_output.h"

#include "lib/import/lw/base/bounded_text.h"
#include "lib/import/lw/base/tokens.h"
#include "lib/toolkit/vc4_tv.h"

void lw_output_surface_color(const char* surface_name, const float rgb[3])
{
    Tv_Surface(surface_name, lw_tokens.color, lw_tokens.rgb, rgb, 0);
}

static void output_reflection_map(const char* surface_name, const lw_surface_attributes* attributes)
{
    const char* const image = attributes->reflection_map_name;
    char texture_name[lw_name_size]; // not made unique: surfaces with one map share the texture
    lw_format_text(texture_name, sizeof texture_name, "rmap: %s", image);
    int32_t image_type = 0;
    Tv_Determine_Image_File_Type(image, &image_type);
    Tv_Texture(texture_name, lw_tokens.image, lw_tokens.textureimage, image_type, image, 1, lw_tokens.enabled,
               lw_tokens.on, 1, 0);
    Tv_Surface(surface_name, lw_tokens.sphenvmap, lw_tokens.enabled, lw_tokens.on, //
               lw_tokens.reflectcoeff, &attributes->reflection,                    //
               lw_tokens.texturelink, texture_name, lw_tokens.resetmatrix,         //
               lw_tokens.rotate, lw_tokens.yaxis, &attributes->seam_angle, 1, 0);
}

void lw_output_surface_shading(const char* surface_name, const lw_surface_attributes* attributes)
{
    const float metal = attributes->Color_Highlights_flag ? 1.0f : 0.0f;
    // The file has no ambient value: the luminosity stands for it too.
    Tv_Surface(surface_name, lw_tokens.model, lw_tokens.phong, //
               lw_tokens.shininess, &attributes->glossiness,   //
               lw_tokens.metal, &metal, 1,                     //
               lw_tokens.shadingcoeffs,                        //
               lw_tokens.ambient, &attributes->luminosity,     //
               lw_tokens.diffuse, &attributes->diffuse,        //
               lw_tokens.specular, &attributes->specular,      //
               lw_tokens.luminous, &attributes->luminosity,    //
               lw_tokens.reflect, &attributes->reflection,     //
               lw_tokens.ior, &attributes->refraction_index, 1, 0);
    if (attributes->reflection_map_name && attributes->reflection > 0.0f) {
        output_reflection_map(surface_name, attributes);
    }
}

void lw_output_surface_opacity(const char* surface_name, const lw_surface_attributes* attributes)
{
    const float face = 1.0f - attributes->transparency;
    Tv_Surface(surface_name, lw_tokens.opacity, lw_tokens.facecoeff, &face, 0);
    if (!attributes->Opaque_Edge_Flag && !attributes->Transparent_Edge_flag) return;
    float edge_coeff = attributes->Opaque_Edge_Flag ? 1.0f - attributes->edge_threshold : attributes->edge_threshold;
    if (edge_coeff < 0.0f) edge_coeff = 0.0f;
    if (edge_coeff > 1.0f) edge_coeff = 1.0f;
    const float edge_exponent = 1.0f;
    Tv_Surface(surface_name, lw_tokens.opacity, lw_tokens.edgecoeff, &edge_coeff, lw_tokens.edgeexp, &edge_exponent,
               lw_tokens.edge, lw_tokens.enabled, lw_tokens.on, 0);
}
