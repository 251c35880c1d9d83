// What a scene says about the world around its objects: backdrop, time line, ambient light.
#pragma once
#include <cstdint>

// Keywords that do something at once. 0 on failure.
int16_t lw_read_ambient_color();
int16_t lw_read_ambient_intensity();
int16_t lw_read_background_image();

// Closing steps of a read that ended well: the toolkit's time line grows to hold the scene's, then the background is set.
void lw_update_time_line();
void lw_update_background();
