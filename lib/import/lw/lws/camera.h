// The scene's one camera, "lightwave" in the toolkit: placed by the first key of its motion, then animated as a path of
// look-from and look-at points.
#pragma once
#include <cstdint>

// Closing step: the camera of the scene, if it has a motion with keys.
void lw_output_camera();

// Where the camera stands and looks at a key, and its lens; sends the picture size to the toolkit each time. Leaves the
// outputs alone where there is no motion. The aim keeps the first key's distance for all keys.
void lw_get_camera_vectors(int16_t key_index, float lookfrom[3], float lookat[3], float lookup[3], float* focal_length,
                           float window[2]);

// All keys, to the camera's channels.
void lw_output_camera_animation();
