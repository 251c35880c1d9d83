#include "export/gltf/material/layer_normal.h"

#include <algorithm>
#include <cmath>

namespace gltf {
namespace {

constexpr float height_of_one = 1.0f / 32; // of a height of 1, in longer sides of the picture

struct Neighbours {
    uint32_t before, after;
};

Neighbours around(uint32_t i, uint32_t size, bool wrap)
{
    if (wrap) return {i == 0 ? size - 1 : i - 1, i + 1 == size ? 0 : i + 1};
    return {i == 0 ? 0 : i - 1, i + 1 == size ? i : i + 1};
}

unsigned char byte_of(float x)
{
    return static_cast<unsigned char>(std::clamp(x * 127.5f + 128.0f, 0.0f, 255.0f)); // 0 is 128, as in flat_normal
}

} // namespace

Pixels normals_of(const Heights& heights)
{
    Pixels normals = make_pixels(heights.width, heights.height);
    // Sobel's filter weighs 8 pixels, and spans two.
    const float slope = height_of_one * static_cast<float>(std::max(heights.width, heights.height)) / 8;
    for (uint32_t y = 0; y < heights.height; y++) {
        const Neighbours row = around(y, heights.height, heights.wrap_v);
        const std::size_t up = std::size_t{row.before} * heights.width, here = std::size_t{y} * heights.width;
        const std::size_t down = std::size_t{row.after} * heights.width;
        for (uint32_t x = 0; x < heights.width; x++) {
            const auto [left, right] = around(x, heights.width, heights.wrap_u);
            const std::span<const float> a = heights.along_u, b = heights.along_v;
            const float to_right = (a[up + right] - a[up + left]) + 2 * (a[here + right] - a[here + left]) +
                                   (a[down + right] - a[down + left]);
            const float upwards =
                (b[up + left] - b[down + left]) + 2 * (b[up + x] - b[down + x]) + (b[up + right] - b[down + right]);
            const float nx = -to_right * slope, ny = -upwards * slope;
            const float by = 1 / std::sqrt(nx * nx + ny * ny + 1);
            unsigned char* const to = normals.at(x, y);
            to[0] = byte_of(nx * by);
            to[1] = byte_of(ny * by);
            to[2] = byte_of(by);
            to[3] = 255;
        }
    }
    return normals;
}

} // namespace gltf
