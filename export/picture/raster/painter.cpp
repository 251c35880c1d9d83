#include "export/picture/raster/painter.h"

#include <algorithm>
#include <array>
#include <bitset>
#include <cmath>
#include <glm/common.hpp>
#include <glm/geometric.hpp>

#include "export/picture/base/color.h"

namespace picture {

namespace {

// Two numbers of 0 to 1 for each sample of each pixel, always the same. The mixing is that of
// M. Jarzynski and M. Olano, Hash Functions for GPU Rendering, JCGT 9(3), 2020 (pcg3d).
glm::dvec2 jitter(uint32_t x, uint32_t y, uint32_t z)
{
    const auto mix = [&] {
        x += y * z;
        y += z * x;
        z += x * y;
    };
    x = x * 1664525u + 1013904223u;
    y = y * 1664525u + 1013904223u;
    z = z * 1664525u + 1013904223u;
    mix();
    x ^= x >> 16;
    y ^= y >> 16;
    z ^= z >> 16;
    mix();
    constexpr double unit = 1.0 / 4294967296.0;
    return {x * unit, y * unit};
}

// On a scale on which equal steps look equal.
glm::vec4 look(const glm::vec4& color)
{
    return glm::sqrt(color);
}

} // namespace

Painter::Painter(const Stage& stage, const Viewpoint& view, const Lighting& lighting, const Frame& frame)
    : stage_(stage), frame_(frame), tracer_(stage, lighting), view_(view), filter_(frame.filter, frame.side),
      axes_(view.axes)
{
    // Only some of a pixel's samples are shaded where they agree: they have to see the whole of it.
    const double share = std::min(1.0, 2.0 / frame.side);
    pixel_ = static_cast<float>(2 * view.half_height / frame.height * share);
    spacing_ = 1.0f / (static_cast<float>(frame.width) * static_cast<float>(frame.side));
}

Painter::Sample Painter::sample(int64_t x, int64_t y, unsigned number) const
{
    glm::dvec2 inside(0.5);
    if (frame_.side > 1) inside = jitter(static_cast<uint32_t>(x), static_cast<uint32_t>(y), number);
    const double across = (static_cast<double>(x) + (number % frame_.side + inside.x) / frame_.side) / frame_.width;
    const double down = (static_cast<double>(y) + (number / frame_.side + inside.y) / frame_.side) / frame_.height;
    Sample result;
    result.place = {across, down};
    const glm::vec3 toward((2 * across - 1) * view_.half_width, (1 - 2 * down) * view_.half_height, -1);
    if (view_.perspective) {
        result.ray.direction = glm::normalize(axes_ * toward);
        result.ray.spread = pixel_;
    } else {
        result.ray.origin = axes_ * glm::vec3(toward.x, toward.y, 0);
        result.ray.direction = -axes_[2];
        result.ray.width = pixel_;
    }
    return result;
}

glm::vec4 Painter::shade(const Sample& sample, const Hit& hit) const
{
    glm::vec4 color = hit ? tracer_.seen(sample.ray, hit) : glm::vec4(0);
    if (frame_.behind && color.w < 1) {
        // Parallel rays all see one point of the sky; it is shown as a lens of 53 degrees would.
        glm::vec3 direction = sample.ray.direction;
        if (!view_.perspective) {
            const glm::vec2 off = (sample.place * 2.0f - 1.0f) * 0.5f;
            const float shape = static_cast<float>(frame_.width) / static_cast<float>(frame_.height);
            direction = glm::normalize(axes_ * glm::vec3(off.x * shape, -off.y, -1));
        }
        color += (1 - color.w) *
                 glm::vec4(frame_.behind->behind(sample.place, spacing_, direction, stage_.model().textures), 1);
    }
    // What isn't a number becomes 0.
    for (int i = 0; i < 4; ++i) color[i] = color[i] > 0 ? std::min(color[i], 1.0f) : 0.0f;
    return color;
}

// Samples of one surface that look alike in all quarters of the pixel stand for the rest of theirs.
void Painter::shade_pixel(const Sample* samples, const Hit* hits, glm::vec4* out) const
{
    const unsigned side = frame_.side, count = side * side;
    if (side < 3) {
        for (unsigned i = 0; i < count; ++i) out[i] = shade(samples[i], hits[i]);
        return;
    }
    constexpr float alike = 0.012f; // about 3 steps of a byte on the screen
    std::bitset<std::size_t{most_side} * most_side> done;
    for (unsigned first = 0; first < count; ++first) {
        if (done[first]) continue;
        const auto same = [&](unsigned i) {
            return hits[i].instance == hits[first].instance && hits[i].primitive == hits[first].primitive;
        };
        const auto quarter = [&](unsigned i) { return (i % side * 2 / side) + 2 * (i / side * 2 / side); };
        std::array<unsigned, 4> chosen{};
        std::array<bool, 4> have{};
        glm::vec4 low(1), high(0);
        for (unsigned i = first; i < count; ++i) {
            const unsigned q = quarter(i);
            if (have[q] || !same(i)) continue;
            have[q] = true;
            chosen[q] = i;
            out[i] = shade(samples[i], hits[i]);
            low = glm::min(low, look(out[i]));
            high = glm::max(high, look(out[i]));
        }
        const bool agree = glm::all(glm::lessThanEqual(high - low, glm::vec4(alike)));
        for (unsigned i = first; i < count; ++i) {
            if (!same(i)) continue;
            done[i] = true;
            if (i == chosen[quarter(i)]) continue;
            out[i] = agree ? out[chosen[quarter(i)]] : shade(samples[i], hits[i]);
        }
    }
}

// `count` pixels from (x, y) on, to the right; out: their samples as rows of the pixels' grid.
void Painter::paint_row(int64_t x, int64_t y, uint32_t count, glm::vec4* out) const
{
    const unsigned side = frame_.side, a_pixel = side * side;
    const std::size_t total = std::size_t{count} * a_pixel;
    std::vector<Sample> samples(total);
    std::vector<Hit> hits(total);
    for (std::size_t i = 0; i < total; i += packet) {
        std::array<Ray, packet> rays;
        const std::size_t here = std::min<std::size_t>(packet, total - i);
        for (std::size_t k = 0; k < here; ++k) {
            const std::size_t number = i + k;
            samples[number] =
                sample(x + static_cast<int64_t>(number / a_pixel), y, static_cast<unsigned>(number % a_pixel));
            rays[k] = samples[number].ray;
        }
        stage_.closest(std::span(rays).first(here), hits.data() + i);
    }
    std::vector<glm::vec4> colors(a_pixel);
    for (uint32_t pixel = 0; pixel < count; ++pixel) {
        shade_pixel(samples.data() + std::size_t{pixel} * a_pixel, hits.data() + std::size_t{pixel} * a_pixel,
                    colors.data());
        for (unsigned i = 0; i < a_pixel; ++i)
            out[std::size_t{i / side} * count * side + std::size_t{pixel} * side + i % side] = colors[i];
    }
}

void Painter::paint(const Tile& tile, glm::vec4* out) const
{
    const unsigned side = frame_.side;
    const uint32_t border = filter_.border(), width = tile.width + 2 * border, height = tile.height + 2 * border;
    const std::size_t row = std::size_t{width} * side * side;
    std::vector<glm::vec4> samples(row * height);
    for (uint32_t y = 0; y < height; ++y)
        paint_row(int64_t{tile.x} - border, int64_t{tile.y} + y - border, width, samples.data() + row * y);
    filter_.apply(samples, tile.width, tile.height, out);
}

void Painter::paint_bytes(const Tile& tile, unsigned char* rgba, std::size_t row) const
{
    std::vector<glm::vec4> colors(std::size_t{tile.width} * tile.height);
    paint(tile, colors.data());
    const glm::vec4* from = colors.data();
    for (uint32_t y = 0; y < tile.height; ++y) {
        unsigned char* to = rgba + y * row * 4;
        for (uint32_t x = 0; x < tile.width; ++x, ++from, to += 4) {
            const float whole = from->w > 0 && from->w < 1 ? 1 / from->w : 1.0f;
            for (int i = 0; i < 3; ++i) to[i] = screen_of((*from)[i] * whole);
            to[3] = static_cast<unsigned char>(std::clamp(from->w, 0.0f, 1.0f) * 255 + 0.5f);
        }
    }
}

Painter::Brightness Painter::brightness() const
{
    Brightness result;
    for (uint32_t y = 0; y < frame_.height; ++y)
        for (uint32_t x = 0; x < frame_.width; ++x) {
            const Sample sample = this->sample(x, y, 0);
            const Hit hit = stage_.closest(sample.ray);
            if (!hit) continue;
            const glm::vec4 color = glm::min(tracer_.seen(sample.ray, hit), glm::vec4(1));
            if (!(color.w > 0)) continue;
            result.mean += static_cast<double>(0.2126f * color.x + 0.7152f * color.y + 0.0722f * color.z);
            ++result.covered;
        }
    if (result.covered != 0) result.mean /= static_cast<double>(result.covered);
    return result;
}

} // namespace picture
