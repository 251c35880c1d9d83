// What a scene says, as far as it has been read: motions, camera, the light under way, time line and backdrop. Each
// read has one record, which every room of the scene reader reads and writes through `scn`.
#pragma once
#include <cstdint>

// One key of a motion or of an envelope. An envelope's value stands in position[0]; rotation and scale are a motion's.
struct lw_motion_key {
    float position[3];    // Z stands negated already (motions alone)
    float rotation[3];    // degrees as in the file: the turns about Y, X and Z, in this order
    float scale[3];       // along X, Y, Z
    int16_t frame;        // the low 16 bits of the file's number
    int16_t linear;       // kept, and not used
    float tension;        // these three go to the toolkit as they are
    float continuity;     //
    float bias;           //
    int16_t end_behavior; // 0 reset, 1 constant, 2 cycle; the file's in the last key, 0 in all others
};

struct lw_motion_block {
    int16_t parsed;      // 1: read to its end, with one key or more
    int16_t applied;     // 1: an object's motion that has gone to its instance
    int16_t num_keys;    // means nothing while `parsed` is 0
    lw_motion_key* keys; // owned, or null
};

// -1 and -1.0 say that the file gave no value; of a colour the first component alone says so.
struct lw_scene_params {
    lw_motion_block object_motion; // of the object added last
    lw_motion_block light_motion;  // of the light added last
    lw_motion_block camera_motion;

    int32_t first_frame, last_frame; // start at 1
    float frames_per_second;         // starts at 30
    int16_t has_animation;           // 1: a motion of two keys, or an envelope of one, has come

    int16_t custom_width, custom_height; // picture size
    float zoom_factor;                   // starts at 3.2; 1 / zoom_factor is half the window over the focal length

    char* light_name;      // owned; the toolkit's name of the light under way, null before the first
    int16_t light_pending; // 1: the light has values that the toolkit hasn't
    float light_color[3];
    float light_intensity;
    int16_t light_type; // 0 distant, 1 point, 2 spot
    float falloff;
    float cone_angle, edge_angle; // degrees
    int16_t shadow_map_size;      // 0: none given

    int16_t solid_backdrop;
    float backdrop_color[3];
    int16_t zenith_only;
    float zenith_color[3], sky_color[3], ground_color[3], nadir_color[3];
    char* bg_image; // owned; the mapped name, or null
};

// The record of the scene being read; null between reads.
extern lw_scene_params* scn;

// Allocates `scn` and gives every field its start value. 0 when there is no memory.
int16_t lw_make_scene_params();

// Puts the fields of one light back, for the next.
void lw_reset_light_params();

// Empties a block: not parsed, no keys.
void lw_drop_motion(lw_motion_block* block);

// Gives back the record and all that it owns.
void lw_free_scene_params();
