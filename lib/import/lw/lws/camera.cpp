#include "lib/import/lw/lws/camera.h"

#include "lib/import/lw/base/option_variables.h"
#include "lib/import/lw/base/tokens.h"
#include "lib/import/lw/lws/aim.h"
#include "lib/import/lw/lws/scene_parameters.h"
#include "lib/import/lw/lws/transforms.h"
#include "lib/services/import_io.h"
#include "lib/toolkit/vc4_tv.h"

static constexpr const char* camera_name = "lightwave";

static bool has_camera()
{
    const lw_motion_block* const motion = &scn->camera_motion;
    return motion->parsed && !motion->applied && motion->num_keys;
}

void lw_output_camera()
{
    if (!has_camera()) return;
    float lookfrom[3] = {}, lookat[3] = {}, lookup[3] = {}, focal_length = 0, window[2] = {};
    lw_get_camera_vectors(0, lookfrom, lookat, lookup, &focal_length, window);
    Tv_Camera(camera_name, lw_tokens.active, 1, lw_tokens.focallength, &focal_length, 1, lw_tokens.formmappingtype,
              lw_tokens.type4, 1, lw_tokens.lookfrom, lookfrom, 1, lw_tokens.lookat, lookat, 1, lw_tokens.lookup,
              lookup, 1, lw_tokens.projection, lw_tokens.perspective, 1, lw_tokens.window, window, 1, 0);
    if (!lw_import_keyframe0_only) lw_output_camera_animation();
}

static void send_resolution()
{
    int32_t size[2] = {480, 360};
    if (scn->custom_width != -1 && scn->custom_height != -1) {
        size[0] = scn->custom_width;
        size[1] = scn->custom_height;
    }
    Tv_Option(lw_tokens.resolution, size, 0);
}

void lw_get_camera_vectors(int16_t key_index, float lookfrom[3], float lookat[3], float lookup[3], float* focal_length,
                           float window[2])
{
    if (!has_camera()) return;
    const lw_motion_key* const key = &scn->camera_motion.keys[key_index];
    send_resolution();

    *focal_length = 5.0f; // zoom shows in the window alone
    window[0] = window[1] = 10.0f;
    if (scn->zoom_factor > 0.001f) window[0] = window[1] = 10.0f / scn->zoom_factor;

    float m[4][4];
    lw_aim_matrix(key, m);
    float direction[3] = {0, 0, -1};
    lw_aim_vector(m, direction);
    const float distance = lw_aim_distance(scn->camera_motion.keys[0].position);
    for (int i = 0; i < 3; ++i) lookfrom[i] = key->position[i];
    Tv_Vector_Scale(direction, distance, lookat);
    Tv_Vector_Add(key->position, lookat, lookat);
    lookup[0] = lookup[2] = 0;
    lookup[1] = 1;
    lw_aim_vector(m, lookup);
}

// Slots of the channel table.
static constexpr int slot_lookfrom = 8, slot_lookat = 11, slot_roll = 14;

static void send_keyframe(void* channel, const lw_motion_key* key, int32_t time, float value)
{
    if (!channel) return;
    lw_send_keyframe_to_toolkit(channel, key, time, value, nullptr, key->tension, key->continuity, key->bias, 0, 0);
}

void lw_output_camera_animation()
{
    void* channels[16] = {};
    if (!has_camera() || !Import_IO_Get_DefaultCameraAnimationChannelPtrs(camera_name, channels)) return;
    for (int16_t i = 0; i < scn->camera_motion.num_keys; ++i) {
        const lw_motion_key* const key = &scn->camera_motion.keys[i];
        float lookfrom[3] = {}, lookat[3] = {}, lookup[3] = {}, focal_length = 0, window[2] = {};
        lw_get_camera_vectors(i, lookfrom, lookat, lookup, &focal_length, window);
        const int32_t time = lw_key_time(key);
        for (int axis = 0; axis < 3; ++axis) send_keyframe(channels[slot_lookfrom + axis], key, time, lookfrom[axis]);
        for (int axis = 0; axis < 3; ++axis) send_keyframe(channels[slot_lookat + axis], key, time, lookat[axis]);
        send_keyframe(channels[slot_roll], key, time, key->rotation[2]); // degrees, unlike an object's
    }
    Import_IO_OptimizeCameraTransformationChannels(camera_name);
}
