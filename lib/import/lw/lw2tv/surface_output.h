// The toolkit calls for a surface as a whole: colour, shading, reflection map, opacity, edges.
#pragma once
#include <cstdint>

// What one SURF chunk says of the surface itself. Fractions unless a line says otherwise.
struct lw_surface_attributes {
    float luminosity, diffuse, specular, reflection, transparency;
    int32_t glossiness;        // 6 to 300, or what the file says below 6
    char* reflection_map_name; // owned, mapped; null: none
    float seam_angle;          // no unit fixed
    float refraction_index;
    float edge_threshold;
    float smoothing_angle; // degrees
    int16_t Color_Highlights_flag, Opaque_Edge_Flag, Transparent_Edge_flag;
};

void lw_output_surface_color(const char* surface_name, const float rgb[3]);

// The shading values and, where the surface reflects, its reflection map. Goes before the layers.
void lw_output_surface_shading(const char* surface_name, const lw_surface_attributes* attributes);

// Face and edge opacity. Goes after the layers.
void lw_output_surface_opacity(const char* surface_name, const lw_surface_attributes* attributes);
