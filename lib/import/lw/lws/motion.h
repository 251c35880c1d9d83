// Motions (nine values a key) and envelopes (one value a key) of a scene file, read into blocks of keys.
#pragma once
#include <cstdint>

#include "lib/import/lw/lws/scene_parameters.h"

// The block that follows "ObjectMotion", "LightMotion" or "CameraMotion". 1 when it was read, also when it has no keys;
// 0 on failure: then the block isn't parsed, and owns the keys read so far until it is dropped or read again.
int16_t lw_parse_motion_data(lw_motion_block* block);

// The block that follows an "(envelope)" which stands where a keyword may. The same results.
int16_t lw_parse_envelope_data(lw_motion_block* block);
