// What survives of a SURF chunk: how its mesh is smoothed, and how its textures lie on the instance.
#pragma once
#include <cstdint>

struct LW_Surface_Info {
    float smoothing_angle;   // degrees; the option's where the surface gives none
    int16_t smoothing_flag;  // 1: normals are smoothed
    int16_t has_projection;  // 1: an image map came; never cleared
    int16_t projection;      // -1 none, 0 planar, 1 spherical, 2 cylindrical, 3 cubic
    float texture_center[3]; // of the first image map; Z negated already
    float texture_size[3];
    // Of the surface's first texture, which needn't be the image map.
    int16_t x_axis_flag, y_axis_flag, z_axis_flag, world_coords_flag;
};
