// What a scene says about the world around its objects: backdrop and ambient light.
#pragma once
#include <cstdint>

// Keywords that do something at once. 0 on failure.
int16_t lw_read_ambient_color();
int16_t lw_read_ambient_intensity();
int16_t lw_read_background_image();

// Closing step of a read that ended well.
void lw_update_background();
