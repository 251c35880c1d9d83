// What lights and the camera aim by: the matrix of their angles, and the distance to the middle of the scene.
#pragma once
#include "lib/import/lw/lws/scene_parameters.h"

// The transpose of the turn that an object with these angles gets.
void lw_aim_matrix(const lw_motion_key* key, float m[4][4]);

// v becomes the unit vector that the matrix, on the left of a column, makes of it.
void lw_aim_vector(const float m[4][4], float v[3]);

// How far from `position` to aim, scene units: as far as the middle of the scene's box as it stands now, 4 at least.
float lw_aim_distance(const float position[3]);
