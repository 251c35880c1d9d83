#include "lib/import/lw/lw2tv/texture_projection.h"

#include <cstdint>

#include "lib/import/lw/base/tokens.h"
#include "lib/toolkit/vc4_tv.h"

// O and the three vectors that reach from it; in the end U, V and, for a cube, W are points.
struct Frame {
    float o[3];
    float u[3] = {1, 0, 0};
    float v[3] = {0, 1, 0};
    float w[3] = {0, 0, 1};
};

enum Axis { AXIS_X, AXIS_Y, AXIS_Z, AXIS_NONE };

static Axis axis_of(const LW_Surface_Info& info)
{
    if (info.x_axis_flag) return AXIS_X;
    if (info.y_axis_flag) return AXIS_Y;
    return info.z_axis_flag ? AXIS_Z : AXIS_NONE;
}

static void set(float* vector, float x, float y, float z)
{
    vector[0] = x;
    vector[1] = y;
    vector[2] = z;
}

static void set_scaled(float* vector, float x, float y, float z, float factor)
{
    set(vector, x, y, z);
    Tv_Vector_Scale(vector, factor, vector);
}

static float larger(float a, float b)
{
    return a > b ? a : b;
}

static bool make_planar(const LW_Surface_Info& info, Frame& frame)
{
    const float *c = info.texture_center, *s = info.texture_size;
    switch (axis_of(info)) {
    case AXIS_X:
        set_scaled(frame.u, 0, 0, -1, s[2]);
        set_scaled(frame.v, 0, 1, 0, s[1]);
        set(frame.o, c[0] + s[0] / 2, c[1] - s[1] / 2, c[2] + s[2] / 2);
        return true;
    case AXIS_Y:
        set_scaled(frame.u, 1, 0, 0, s[0]);
        set_scaled(frame.v, 0, 0, -1, s[2]);
        set(frame.o, c[0] - s[0] / 2, c[1] + s[1] / 2, c[2] + s[2] / 2);
        return true;
    case AXIS_Z:
        set_scaled(frame.u, 1, 0, 0, s[0]);
        set_scaled(frame.v, 0, 1, 0, s[1]);
        set(frame.o, c[0] - s[0] / 2, c[1] - s[1] / 2, c[2] + s[2] / 2);
        return true;
    default: return false;
    }
}

static bool make_cylindrical(const LW_Surface_Info& info, Frame& frame)
{
    const float *c = info.texture_center, *s = info.texture_size;
    switch (axis_of(info)) {
    case AXIS_X:
        set_scaled(frame.u, 0, -1, 0, larger(s[1] / 2, s[2] / 2));
        set_scaled(frame.v, 1, 0, 0, s[0]);
        set(frame.o, c[0] - s[0] / 2, c[1], c[2]);
        return true;
    case AXIS_Y:
        set_scaled(frame.u, 0, 0, -1, larger(s[0] / 2, s[2] / 2));
        set_scaled(frame.v, 0, 1, 0, s[1]);
        set(frame.o, c[0], c[1] - s[1] / 2, c[2]);
        return true;
    case AXIS_Z:
        set_scaled(frame.u, 0, -1, 0, larger(s[0] / 2, s[1] / 2));
        set_scaled(frame.v, 0, 0, -1, s[2]);
        set(frame.o, c[0], c[1], c[2] + s[2] / 2);
        return true;
    default: return false;
    }
}

static void make_spherical(const LW_Surface_Info& info, Frame& frame)
{
    const float *c = info.texture_center, *s = info.texture_size;
    set(frame.o, c[0], c[1], c[2]);
    switch (axis_of(info)) {
    case AXIS_X:
        set_scaled(frame.u, 0, -1, 0, larger(s[1] / 2, s[2] / 2));
        set_scaled(frame.v, 1, 0, 0, s[0] / 2);
        break;
    case AXIS_Y:
        set_scaled(frame.u, 0, 0, -1, larger(s[0] / 2, s[2] / 2));
        set_scaled(frame.v, 0, 1, 0, s[1] / 2);
        break;
    case AXIS_Z:
        set_scaled(frame.u, 0, -1, 0, larger(s[0] / 2, s[1] / 2));
        set_scaled(frame.v, 0, 0, -1, s[2] / 2);
        break;
    default: break;
    }
}

static void make_cubic(const LW_Surface_Info& info, Frame& frame)
{
    const float *c = info.texture_center, *s = info.texture_size;
    Tv_Vector_Scale(frame.u, s[0], frame.u);
    Tv_Vector_Scale(frame.v, s[1], frame.v);
    Tv_Vector_Scale(frame.w, s[2], frame.w);
    set(frame.o, c[0] - s[0] / 2, c[1] - s[1] / 2, c[2] - s[2] / 2);
    Tv_Vector_Add(frame.o, frame.w, frame.w);
}

void UpdateInstanceWithSurfaceInfo(const char* instance_name, const LW_Surface_Info* surface_info)
{
    if (!surface_info || !surface_info->has_projection) return;
    Frame frame;
    int32_t model = 0;
    switch (surface_info->projection) {
    case 0:
        model = lw_tokens.orthographic;
        if (!make_planar(*surface_info, frame)) return;
        break;
    case 1:
        model = lw_tokens.spherical;
        make_spherical(*surface_info, frame);
        break;
    case 2:
        model = lw_tokens.cylindrical;
        if (!make_cylindrical(*surface_info, frame)) return;
        break;
    case 3:
        model = lw_tokens.box;
        make_cubic(*surface_info, frame);
        break;
    default: return;
    }
    Tv_Vector_Add(frame.o, frame.u, frame.u);
    Tv_Vector_Add(frame.o, frame.v, frame.v);
    const int32_t space = surface_info->world_coords_flag ? lw_tokens.world : lw_tokens.primitive;
    Tv_TxtrParam(lw_tokens.instance, instance_name,  //
                 lw_tokens.enabled, lw_tokens.on, 1, //
                 lw_tokens.coordsystem, space, 1,    //
                 lw_tokens.origin, frame.o, 1,       //
                 lw_tokens.upoint, frame.u, 1,       //
                 lw_tokens.vpoint, frame.v, 1,       //
                 lw_tokens.wpoint, frame.w, 1,       //
                 lw_tokens.model, model, 1, 0);
}

void lw_copy_txtrproj_info(const char* source_instance, const char* new_instance)
{
    int32_t enabled = 0, space = 0, model = 0;
    Frame frame = {};
    Tv_Inquire_TxtrParam(lw_tokens.instance, source_instance, //
                         lw_tokens.enabled, &enabled, 1,      //
                         lw_tokens.coordsystem, &space, 1,    //
                         lw_tokens.origin, frame.o, 1,        //
                         lw_tokens.upoint, frame.u, 1,        //
                         lw_tokens.vpoint, frame.v, 1,        //
                         lw_tokens.wpoint, frame.w, 1,        //
                         lw_tokens.model, &model, 1, 0);
    Tv_TxtrParam(lw_tokens.instance, new_instance, //
                 lw_tokens.enabled, enabled, 1,    //
                 lw_tokens.coordsystem, space, 1,  //
                 lw_tokens.origin, frame.o, 1,     //
                 lw_tokens.upoint, frame.u, 1,     //
                 lw_tokens.vpoint, frame.v, 1,     //
                 lw_tokens.wpoint, frame.w, 1,     //
                 lw_tokens.model, model, 1, 0);
}
