// Pictures in memory.
#pragma once
#include <cstddef>
#include <cstdint>
#include <vector>

namespace gltf {

// Rows from the top, 4 bytes per pixel (red, green, blue, alpha), without gaps.
struct Pixels {
    uint32_t width = 0, height = 0;
    std::vector<unsigned char> rgba;

    unsigned char* at(uint32_t x, uint32_t y) { return rgba.data() + (std::size_t{y} * width + x) * 4; }
    const unsigned char* at(uint32_t x, uint32_t y) const { return rgba.data() + (std::size_t{y} * width + x) * 4; }
};

Pixels make_pixels(uint32_t width, uint32_t height); // all 0

// Brought to at most `longest` pixels on the longer side, in one step: each new pixel is the mean of the area that it
// covers. Left alone when it is small enough already.
void shrink_to(Pixels& pixels, uint32_t longest);

// Brightness as the screen's, 0 to 255. A grey pixel gives its own value back exactly.
inline unsigned grey(const unsigned char* rgba)
{
    return (rgba[0] * 77u + rgba[1] * 150u + rgba[2] * 29u + 128u) >> 8; // ITU-R BT.601
}

bool any_alpha(const Pixels& pixels); // a pixel below 255
void drop_alpha(Pixels& pixels);      // every pixel 255

} // namespace gltf
