#include "export/gltf/material/layer_compose.h"

#include <algorithm>
#include <cmath>
#include <glm/common.hpp>
#include <glm/vector_relational.hpp>
#include <memory>

#include "export/gltf/material/layer_normal.h"

namespace gltf {
namespace {

// One layer as seen at each pixel of the slot's picture: a row at a time, colours 0 to 1, and whether it acts there.
class LayerRows {
public:
    virtual ~LayerRows() = default;
    virtual void row(uint32_t y, std::vector<std::array<float, 3>>& colors, std::vector<bool>& acts) const = 0;
};

// An image of the picture's own size, pixel for pixel.
class SameSize : public LayerRows {
public:
    explicit SameSize(std::shared_ptr<const Pixels> pixels) : pixels_(std::move(pixels)) {}
    void row(uint32_t y, std::vector<std::array<float, 3>>& colors, std::vector<bool>& acts) const override
    {
        const unsigned char* from = pixels_->at(0, y);
        for (std::size_t x = 0; x < colors.size(); x++, from += 4) {
            colors[x] = {from[0] / 255.0f, from[1] / 255.0f, from[2] / 255.0f};
            acts[x] = true;
        }
    }

private:
    std::shared_ptr<const Pixels> pixels_;
};

// An image laid anew, with linear blending between its pixels.
class Resampled : public LayerRows {
public:
    Resampled(std::shared_ptr<const Pixels> pixels, const LayerStep& step, const SlotPlan& plan)
        : pixels_(std::move(pixels)), step_(step), width_(plan.width), height_(plan.height)
    {
    }

    void row(uint32_t y, std::vector<std::array<float, 3>>& colors, std::vector<bool>& acts) const override
    {
        const double v = 1 - (y + 0.5) / height_; // up, as repeats count
        const Place vertical = place(1 - v * step_.repeats[1], pixels_->height, step_.wrap_v);
        for (uint32_t x = 0; x < width_; x++) {
            const Place level = place((x + 0.5) / width_ * step_.repeats[0], pixels_->width, step_.wrap_u);
            acts[x] = vertical.acts && level.acts;
            if (!acts[x]) continue;
            const unsigned char* const p00 = pixels_->at(level.first, vertical.first);
            const unsigned char* const p10 = pixels_->at(level.second, vertical.first);
            const unsigned char* const p01 = pixels_->at(level.first, vertical.second);
            const unsigned char* const p11 = pixels_->at(level.second, vertical.second);
            for (std::size_t c = 0; c < 3; c++) {
                const float upper = static_cast<float>(p00[c]) + level.part * static_cast<float>(p10[c] - p00[c]);
                const float lower = static_cast<float>(p01[c]) + level.part * static_cast<float>(p11[c] - p01[c]);
                colors[x][c] = (upper + vertical.part * (lower - upper)) / 255.0f;
            }
        }
    }

private:
    struct Place {
        uint32_t first = 0, second = 0; // neighbours
        float part = 0;                 // of the way to the second
        bool acts = true;
    };

    static Place place(double coordinate, uint32_t size, bool wrap)
    {
        Place found;
        found.acts = wrap || (coordinate >= 0 && coordinate <= 1);
        const double inside = wrap ? coordinate - std::floor(coordinate) : std::clamp(coordinate, 0.0, 1.0);
        const double pixel = inside * size - 0.5, floor = std::floor(pixel);
        found.part = static_cast<float>(pixel - floor);
        const auto index = [&](double i) {
            if (i < 0) return wrap ? size - 1 : 0u;
            if (i > size - 1) return wrap ? 0u : size - 1;
            return static_cast<uint32_t>(i);
        };
        found.first = index(floor);
        found.second = index(floor + 1);
        return found;
    }

    std::shared_ptr<const Pixels> pixels_;
    const LayerStep& step_;
    uint32_t width_, height_;
};

// The axes of the procedural's space along which the projection's square reaches.
glm::bvec3 reach_of(const FrameSurface& surface, const Procedural& procedural)
{
    glm::dvec3 low(1e300), high(-1e300);
    for (int i = 0; i <= 8; i++)
        for (int k = 0; k <= 8; k++) {
            const glm::dvec3 p = surface.point(i / 8.0, k / 8.0) / procedural.scale;
            low = glm::min(low, p);
            high = glm::max(high, p);
        }
    return glm::greaterThan(high - low, glm::dvec3(1e-4));
}

unsigned char byte_of(float x)
{
    return static_cast<unsigned char>(std::clamp(x, 0.0f, 1.0f) * 255.0f + 0.5f);
}

// A procedural texture over the projection's square. Each pixel costs far more than one of an image, so that there are
// limits to their number; patterns with sharp edges are looked at four times
// in each pixel, and noise, which has none, once.
Pixels bake(const Procedural& procedural, const SlotPlan& plan, const tv::TextureProjection& frame)
{
    constexpr uint32_t longest = 1024;
    const FrameSurface surface(frame);
    const glm::bvec3 reach = reach_of(surface, procedural);
    Pixels pixels = make_pixels(std::min(plan.width, longest), std::min(plan.height, longest));
    const int looks = procedural.kind == Procedural::Kind::turbulence ? 1 : 2;
    for (uint32_t y = 0; y < pixels.height; y++)
        for (uint32_t x = 0; x < pixels.width; x++) {
            glm::dvec3 sum(0);
            for (int look = 0; look < looks * looks; look++) {
                const double u = (x + (look % looks + 0.5) / looks) / pixels.width;
                const double v = 1 - (y + (look / looks + 0.5) / looks) / pixels.height;
                sum += procedural_color(procedural, surface.point(u, v), reach);
            }
            for (int c = 0; c < 3; c++) pixels.at(x, y)[c] = byte_of(static_cast<float>(sum[c] / (looks * looks)));
            pixels.at(x, y)[3] = 255;
        }
    return pixels;
}

std::unique_ptr<LayerRows> open_rows(const LayerStep& step, const SlotPlan& plan, const tv::TextureProjection& frame,
                                     ImageStore& store)
{
    std::shared_ptr<const Pixels> pixels =
        step.image ? store.pixels(*step.image) : std::make_shared<const Pixels>(bake(*step.procedural, plan, frame));
    if (!pixels) return nullptr;
    const bool same = pixels->width == plan.width && pixels->height == plan.height;
    if (same && step.repeats == std::array<double, 2>{1, 1}) return std::make_unique<SameSize>(std::move(pixels));
    return std::make_unique<Resampled>(std::move(pixels), step, plan);
}

float grey_of(const std::array<float, 3>& color)
{
    return (77.0f * color[0] + 150.0f * color[1] + 29.0f * color[2]) / 256.0f; // as grey() of the pixels
}

void approach(float& old, float weight, float value)
{
    old = weight >= 1 ? value : old + weight * (value - old);
}

// The values of a picture while its layers act on it, plane by plane; a plane that no step touches isn't made.
struct Planes {
    std::vector<float> color[3];
    std::vector<float> diffuse, opacity, specular, height_u, height_v;

    void act(const LayerStep& step, std::size_t at, const std::array<float, 3>& value)
    {
        switch (step.target) {
        case LayerTarget::color:
        case LayerTarget::emission:
            for (std::size_t c = 0; c < 3; c++) approach(color[c][at], step.weight, step.multiplier[c] * value[c]);
            break;
        case LayerTarget::diffuse: approach(diffuse[at], step.weight, step.multiplier[0] * grey_of(value)); break;
        case LayerTarget::specular: approach(specular[at], step.weight, step.multiplier[0] * grey_of(value)); break;
        case LayerTarget::opacity: {
            const float transparent = step.invert ? grey_of(value) : 1 - grey_of(value);
            approach(opacity[at], step.weight, 1 - step.multiplier[0] * transparent);
            break;
        }
        case LayerTarget::bump:
            height_u[at] += step.multiplier[0] * grey_of(value);
            height_v[at] += step.multiplier[1] * grey_of(value);
            break;
        }
    }
};

bool targets(const SlotPlan& plan, LayerTarget target)
{
    return std::any_of(plan.steps.begin(), plan.steps.end(),
                       [&](const LayerStep& step) { return step.target == target; });
}

Planes plain_planes(SlotKind kind, const SlotPlan& plan, const PlainSurface& plain)
{
    const std::size_t count = std::size_t{plan.width} * plan.height;
    Planes planes;
    if (kind == SlotKind::base || kind == SlotKind::emission)
        for (std::size_t c = 0; c < 3; c++)
            planes.color[c].assign(count, plain.color[c] * (kind == SlotKind::emission ? plain.luminous : 1));
    if (targets(plan, LayerTarget::diffuse)) planes.diffuse.assign(count, plain.diffuse);
    if (targets(plan, LayerTarget::opacity)) planes.opacity.assign(count, plain.opacity);
    if (kind == SlotKind::specular) planes.specular.assign(count, plain.specular);
    if (kind == SlotKind::normal) {
        planes.height_u.assign(count, 0);
        planes.height_v.assign(count, 0);
    }
    return planes;
}

std::array<unsigned char, 4> pixel_of(SlotKind kind, const Planes& planes, std::size_t at)
{
    if (kind == SlotKind::specular) return {255, 255, 255, byte_of(planes.specular[at])};
    const float brightness = planes.diffuse.empty() ? 1 : planes.diffuse[at];
    std::array<unsigned char, 4> pixel{};
    for (std::size_t c = 0; c < 3; c++) pixel[c] = byte_of(planes.color[c][at] * brightness);
    pixel[3] = planes.opacity.empty() ? 255 : byte_of(planes.opacity[at]);
    return pixel;
}

// What shows outside an image that doesn't wrap.
std::array<unsigned char, 4> plain_pixel(SlotKind kind, const SlotPlan& plan, const PlainSurface& plain)
{
    if (kind == SlotKind::normal) return flat_normal;
    SlotPlan one = plan;
    one.width = one.height = 1;
    return pixel_of(kind, plain_planes(kind, one, plain), 0);
}

Pixels bordered(const Pixels& inner, const SlotPlan& plan, const std::array<unsigned char, 4>& border)
{
    const uint32_t left = plan.repeat_u ? 0 : 1, top = plan.repeat_v ? 0 : 1;
    Pixels outer = make_pixels(inner.width + 2 * left, inner.height + 2 * top);
    for (uint32_t y = 0; y < outer.height; y++) {
        unsigned char* const to = outer.at(0, y);
        for (uint32_t x = 0; x < outer.width; x++) std::copy(border.begin(), border.end(), to + std::size_t{x} * 4);
        if (y < top || y >= top + inner.height) continue;
        const unsigned char* const from = inner.at(0, y - top);
        std::copy(from, from + std::size_t{inner.width} * 4, to + std::size_t{left} * 4);
    }
    return outer;
}

} // namespace

std::optional<Pixels> compose(SlotKind kind, const SlotPlan& plan, const PlainSurface& plain,
                              const tv::TextureProjection& frame, ImageStore& store)
{
    Planes planes = plain_planes(kind, plan, plain);
    std::vector<std::array<float, 3>> colors(plan.width);
    std::vector<bool> acts(plan.width);
    for (const LayerStep& step : plan.steps) {
        const std::unique_ptr<LayerRows> rows = open_rows(step, plan, frame, store);
        if (!rows) return std::nullopt;
        for (uint32_t y = 0; y < plan.height; y++) {
            rows->row(y, colors, acts);
            for (uint32_t x = 0; x < plan.width; x++)
                if (acts[x]) planes.act(step, std::size_t{y} * plan.width + x, colors[x]);
        }
    }
    Pixels picture;
    if (kind == SlotKind::normal) {
        picture = normals_of({plan.width, plan.height, planes.height_u, planes.height_v, plan.repeat_u, plan.repeat_v});
    } else {
        picture = make_pixels(plan.width, plan.height);
        for (std::size_t i = 0; i < picture.rgba.size() / 4; i++) {
            const std::array<unsigned char, 4> pixel = pixel_of(kind, planes, i);
            std::copy(pixel.begin(), pixel.end(), picture.rgba.begin() + static_cast<std::ptrdiff_t>(i * 4));
        }
    }
    if (plan.repeat_u && plan.repeat_v) return picture;
    return bordered(picture, plan, plain_pixel(kind, plan, plain));
}

} // namespace gltf
