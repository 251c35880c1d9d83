#include "export/gltf/image/image_pixels.h"

#include <algorithm>
#include <cmath>

namespace gltf {
namespace {

// The part of the old row or column that new number `i` of `count` covers.
struct Cover {
    uint32_t first = 0;
    std::vector<float> weights; // their sum is 1
};

std::vector<Cover> covers(uint32_t old_size, uint32_t count)
{
    std::vector<Cover> all(count);
    const double step = static_cast<double>(old_size) / count;
    for (uint32_t i = 0; i < count; i++) {
        const double from = i * step, to = std::min<double>((i + 1) * step, old_size);
        all[i].first = static_cast<uint32_t>(from);
        for (uint32_t k = all[i].first; k < to && k < old_size; k++)
            all[i].weights.push_back(static_cast<float>((std::min(to, k + 1.0) - std::max<double>(from, k)) / step));
    }
    return all;
}

} // namespace

Pixels make_pixels(uint32_t width, uint32_t height)
{
    return {width, height, std::vector<unsigned char>(std::size_t{width} * height * 4)};
}

void shrink_to(Pixels& pixels, uint32_t longest)
{
    const uint32_t side = std::max(pixels.width, pixels.height);
    longest = std::max(longest, 1u);
    if (side <= longest) return;
    const auto smaller = [&](uint32_t size) {
        return std::max(1u, static_cast<uint32_t>((uint64_t{size} * longest + side / 2) / side));
    };
    Pixels result = make_pixels(smaller(pixels.width), smaller(pixels.height));
    const std::vector<Cover> columns = covers(pixels.width, result.width);
    const std::vector<Cover> rows = covers(pixels.height, result.height);
    std::vector<float> line(std::size_t{pixels.width} * 4);
    for (uint32_t y = 0; y < result.height; y++) {
        std::fill(line.begin(), line.end(), 0.0f);
        for (std::size_t k = 0; k < rows[y].weights.size(); k++) {
            const float weight = rows[y].weights[k];
            const unsigned char* const from = pixels.at(0, rows[y].first + static_cast<uint32_t>(k));
            for (std::size_t i = 0; i < line.size(); i++) line[i] += weight * static_cast<float>(from[i]);
        }
        for (uint32_t x = 0; x < result.width; x++) {
            float sum[4] = {};
            for (std::size_t k = 0; k < columns[x].weights.size(); k++)
                for (std::size_t c = 0; c < 4; c++)
                    sum[c] += columns[x].weights[k] * line[(columns[x].first + k) * 4 + c];
            for (std::size_t c = 0; c < 4; c++)
                result.at(x, y)[c] = static_cast<unsigned char>(std::clamp(sum[c] + 0.5f, 0.0f, 255.0f));
        }
    }
    pixels = std::move(result);
}

bool any_alpha(const Pixels& pixels)
{
    for (std::size_t i = 3; i < pixels.rgba.size(); i += 4)
        if (pixels.rgba[i] != 255) return true;
    return false;
}

void drop_alpha(Pixels& pixels)
{
    for (std::size_t i = 3; i < pixels.rgba.size(); i += 4) pixels.rgba[i] = 255;
}

} // namespace gltf
