// The numbers of a scene file, and the messages about them. Wherever a number may stand, an animated value, the word
// "(envelope)" with its keys, may stand instead: it counts as the value of its first key.
#pragma once
#include <cstdint>

#include "lib/import/lw/lws/scene_parameters.h"

// One number. 0 on failure, which has been reported.
int16_t lws_get_long(int64_t* value);
int16_t lws_get_float(float* value);

// The body of an envelope whose word "(envelope)" was just taken.
int16_t lws_get_envelope_float(float* value);

// An integer for a field of 16 or of 32 bits, which takes its low ones. The field stays as it was on failure.
int16_t lws_get_int16(int16_t* value);
int16_t lws_get_int32(int32_t* value);

// Three integers of 0 to 255 as a colour, each divided by 255 and limited to 0 to 1.
int16_t lws_get_color(float color[3]);

// The fields that keys of both kinds end with, from the frame on; a whole key of an envelope; and what follows the last
// key: stray tokens, then "EndBehavior" with its number. Another keyword in its place is told, and lost. 0 on
// failure.
int16_t lws_get_key_tail(lw_motion_key* key);
int16_t lws_get_envelope_key(lw_motion_key* key);
int16_t lws_get_end_behavior(lw_motion_key* last_key);

inline constexpr char lws_no_room_for_keys[] = "Out of memory while allocating space for keyframe data list.";

// Reports `message` at level 4 with the line and the keyword dispatched last.
void lw_syntax_err(const char* message);

// Toward zero; NaN is 0, and what doesn't fit is the nearest number that does.
int32_t lws_truncate_to_int32(double value);
