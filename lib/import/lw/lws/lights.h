// Lights: a light's keywords are collected in `scn`, and sent when the next light starts or the file ends.
#pragma once
#include <cstdint>

// "AddLight": finishes the light before, then names and makes the new one. 0 on failure.
int16_t lw_add_light();

// Sends the collected values of the light under way. A light without a motion with keys, or without a type, keeps what
// it had; lights are placed by the first key and not animated.
void lw_update_light_params();
