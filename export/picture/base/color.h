// Linear light and the screen's bytes (sRGB, the exact curve of two pieces).
#pragma once
#include <array>
#include <cstdint>

namespace picture {

// Linear value of every byte.
const std::array<float, 256>& linear_of_screen();

// The byte whose screen value is nearest, halves upward. Below 0, above 1 and what isn't a number: clipped.
uint8_t screen_of(float linear);

} // namespace picture
