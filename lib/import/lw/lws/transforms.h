// From the keys of an object's motion to what the toolkit keeps for its instance: a matrix of the first key, or
// keyframes on the instance's channels. The option lw_import_keyframe0_only chooses.
#pragma once
#include <cstdint>

#include "lib/import/lw/lws/scene_parameters.h"

// Sends scn's object motion to the instance, once; nothing for an empty name.
void lw_apply_transforms(const char* instance_name);

// One keyframe of one channel; every keyframe of the reader goes this way. Of the key only the end behaviour is read.
// `time` counts 1/4800 s. `quat_value` is null for a plain value.
void lw_send_keyframe_to_toolkit(void* channel, const lw_motion_key* key, int32_t time, float value,
                                 const float* quat_value, float tension, float continuity, float bias, float ease_from,
                                 float ease_to);

// When a key stands, in 1/4800 s.
int32_t lw_key_time(const lw_motion_key* key);

// Degrees of the file to radians.
float lw_radians(float degrees);

// out is an identity with the turn by `angle` (radians) in the plane of two axes: out[a][a] = out[b][b] = cos,
// out[a][b] = sin, out[b][a] = -sin.
void lw_turn_matrix(int a, int b, float angle, float out[4][4]);
