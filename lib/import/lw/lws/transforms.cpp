#include "lib/import/lw/lws/transforms.h"

#include <cmath>

#include "lib/import/lw/base/option_variables.h"
#include "lib/import/lw/base/tokens.h"
#include "lib/import/lw/lws/scene_numbers.h"
#include "lib/services/import_io.h"
#include "lib/toolkit/units.h"
#include "lib/toolkit/vc4_tv.h"

static constexpr int axis_x = 0, axis_y = 1, axis_z = 2;

int32_t lw_key_time(const lw_motion_key* key)
{
    const float units = static_cast<float>(key->frame * tv::time_units_per_second);
    return lws_truncate_to_int32(static_cast<double>(units) / static_cast<double>(scn->frames_per_second));
}

float lw_radians(float degrees)
{
    return static_cast<float>(static_cast<double>(degrees) * tv::pi / 180.0);
}

void lw_turn_matrix(int a, int b, float angle, float out[4][4])
{
    const float cosine = static_cast<float>(std::cos(static_cast<double>(angle)));
    const float sine = static_cast<float>(std::sin(static_cast<double>(angle)));
    Tv_Matrix_Identity(out);
    out[a][a] = out[b][b] = cosine;
    out[a][b] = sine;
    out[b][a] = -sine;
}

// The word for both ends of the channel. Anything but the three numbers that the format has is taken for the first.
static int32_t end_word(int16_t end_behavior)
{
    switch (end_behavior) {
    case 1: return lw_tokens.constant;
    case 2: return lw_tokens.cycle;
    default: return lw_tokens.reset;
    }
}

void lw_send_keyframe_to_toolkit(void* channel, const lw_motion_key* key, int32_t time, float value,
                                 const float* quat_value, float tension, float continuity, float bias, float ease_from,
                                 float ease_to)
{
    const int32_t end = end_word(key->end_behavior);
    int32_t scratch = 0;
    int32_t keyframe_id = 0;
    Tv_AnimController(&scratch, lw_tokens.ctrlrid, channel, lw_tokens.type, lw_tokens.kftcb, 1, lw_tokens.preextraptype,
                      end, 1, lw_tokens.postextraptype, end, 1, lw_tokens.keyframe, &keyframe_id, lw_tokens.time, &time,
                      lw_tokens.add, lw_tokens.tcb, lw_tokens.tension, &tension, lw_tokens.tcb, lw_tokens.cont,
                      &continuity, lw_tokens.tcb, lw_tokens.bias, &bias, lw_tokens.tcb, lw_tokens.easefrom, &ease_from,
                      lw_tokens.tcb, lw_tokens.easeto, &ease_to, 1, 0);
    if (keyframe_id == 0) return;
    if (quat_value)
        Tv_AnimController(&scratch, lw_tokens.ctrlrid, channel, lw_tokens.keyframe, &keyframe_id, lw_tokens.kfid,
                          keyframe_id, lw_tokens.quatvalue, quat_value, 1, 0);
    else
        Tv_AnimController(&scratch, lw_tokens.ctrlrid, channel, lw_tokens.keyframe, &keyframe_id, lw_tokens.kfid,
                          keyframe_id, lw_tokens.value, &value, 1, 0);
}

// Scale, then the pivot, then the turns about Z, X and Y, then the place. The pivot comes after the scale here, while
// channels take it before: with a pivot and a scale the two modes place an object differently.
static void set_first_key_matrix(const char* instance_name, const lw_motion_key* key)
{
    Tv_Local_Axes* axes = nullptr;
    Tv_Inquire_Instance(instance_name, lw_tokens.localaxes, &axes, 0);
    float pivot[3] = {0, 0, 0};
    if (axes && axes->origin_enabled)
        for (int i = 0; i < 3; ++i) pivot[i] = axes->axes_matrix[3][i];
    Tv_Vector_Reflect(pivot);

    float m[4][4];
    float turn[4][4];
    Tv_Matrix_Identity(m);
    for (int i = 0; i < 3; ++i) {
        m[3][i] = pivot[i];
        m[i][i] = key->scale[i];
    }
    lw_turn_matrix(axis_x, axis_y, lw_radians(key->rotation[2]), turn); // about Z
    Tv_Matrix_Multiply(1, m, turn, m);
    lw_turn_matrix(axis_y, axis_z, lw_radians(-key->rotation[1]), turn); // about X
    Tv_Matrix_Multiply(1, m, turn, m);
    lw_turn_matrix(axis_z, axis_x, lw_radians(-key->rotation[0]), turn); // about Y
    Tv_Matrix_Multiply(1, m, turn, m);
    Tv_Matrix_Append_Transform(m, lw_tokens.postmultiply, lw_tokens.translate, key->position, 0);
    Tv_Instance(instance_name, lw_tokens.resetmatrix, 0);
    Tv_Transform(lw_tokens.instance, instance_name, lw_tokens.postmultiply, lw_tokens.matrix, m, 0);
}

// Slots of the channel table.
static constexpr int slot_position = 10, slot_scale = 13, slot_rotation = 16, slot_rotation_guard = 6;

static void send_keys(void* const channels[20], const lw_motion_key* key)
{
    const int32_t time = lw_key_time(key);
    const float rotation[3] = {lw_radians(-key->rotation[1]), lw_radians(-key->rotation[0]),
                               lw_radians(key->rotation[2])}; // about X, Y, Z
    const struct {
        int guard, slot;
        const float* values;
    } groups[] = {{slot_position, slot_position, key->position},
                  {slot_scale, slot_scale, key->scale},
                  {slot_rotation_guard, slot_rotation, rotation}};
    for (const auto& group : groups) {
        for (int axis = 0; axis < 3; ++axis) {
            void* const channel = channels[group.slot + axis];
            if (!channels[group.guard + axis] || !channel) continue;
            lw_send_keyframe_to_toolkit(channel, key, time, group.values[axis], nullptr, key->tension, key->continuity,
                                        key->bias, 0, 0);
        }
    }
}

static void send_channels(const char* instance_name, const lw_motion_block* motion)
{
    const int32_t euler_order = 8; // about Z first, then X, then Y
    Tv_Instance(instance_name, lw_tokens.replacechannels, lw_tokens.eulerrotate, 0);
    Tv_Instance(instance_name, lw_tokens.eulerorder, &euler_order, 0);
    void* channels[20] = {};
    if (!Import_IO_Get_DefaultAnimationChannelPtrs(instance_name, channels)) return;
    for (int32_t i = 0; i < motion->num_keys; ++i) send_keys(channels, &motion->keys[i]);
    Import_IO_OptimizeTransformationChannels(instance_name);
}

void lw_apply_transforms(const char* instance_name)
{
    lw_motion_block* const motion = &scn->object_motion;
    if (!*instance_name || !motion->parsed || motion->applied || !motion->num_keys) return;
    if (lw_import_keyframe0_only) set_first_key_matrix(instance_name, &motion->keys[0]);
    motion->applied = 1;
    if (!lw_import_keyframe0_only) send_channels(instance_name, motion);
}
