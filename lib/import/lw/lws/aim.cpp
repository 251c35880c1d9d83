#include "lib/import/lw/lws/aim.h"

#include <limits>

#include "lib/import/lw/lws/transforms.h"
#include "lib/toolkit/vc4_tv.h"

static constexpr float nearest_aim = 4.0f;

void lw_aim_matrix(const lw_motion_key* key, float m[4][4])
{
    float turn[4][4];
    Tv_Matrix_Identity(m);
    lw_turn_matrix(2, 0, lw_radians(key->rotation[0]), turn); // about Y
    Tv_Matrix_Multiply(1, m, turn, m);
    lw_turn_matrix(1, 2, lw_radians(key->rotation[1]), turn); // about X
    Tv_Matrix_Multiply(1, m, turn, m);
    lw_turn_matrix(0, 1, lw_radians(-key->rotation[2]), turn); // about Z
    Tv_Matrix_Multiply(1, m, turn, m);
}

void lw_aim_vector(const float m[4][4], float v[3])
{
    Tv_Vector_Transform(1, 0, 1, 1, 1, 1, v, m, v);
    Tv_Vector_Normalize(v);
}

float lw_aim_distance(const float position[3])
{
    constexpr float nothing = std::numeric_limits<float>::max(); // the corners of the box of an empty scene
    float a[3] = {-nothing, -nothing, -nothing};
    float b[3] = {nothing, nothing, nothing};
    Tv_Compute_Worldspace_Extents(a, b, 0);
    if (a[0] == -nothing || b[0] == nothing) return nearest_aim;
    float center[3]; // in double precision on the way: the corners of a hostile scene add up to more than a float holds
    for (int i = 0; i < 3; ++i)
        center[i] = static_cast<float>((static_cast<double>(a[i]) + static_cast<double>(b[i])) / 2);
    float scratch[3];
    const float distance = Tv_Vector_Direction(center, position, scratch);
    return distance < nearest_aim ? nearest_aim : distance;
}
