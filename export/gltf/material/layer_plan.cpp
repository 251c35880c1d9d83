#include <algorithm>
#include <cmath>

#include "export/gltf/base/byte_key.h"
#include "export/gltf/material/layer_compose.h"

namespace gltf {
namespace {

constexpr uint32_t procedural_side = 512; // of a picture with no image in it

uint32_t limited(double size, uint32_t longest)
{
    return static_cast<uint32_t>(std::clamp(std::round(size), 1.0, static_cast<double>(std::max(longest, 1u))));
}

bool has_procedural(const std::vector<LayerStep>& steps)
{
    return std::any_of(steps.begin(), steps.end(), [](const LayerStep& step) { return !step.image; });
}

bool same_repeats(const std::vector<LayerStep>& steps)
{
    return std::all_of(steps.begin(), steps.end(),
                       [&](const LayerStep& step) { return step.repeats == steps.front().repeats; });
}

// Clamped only where every image is: what wraps must be seen everywhere, and one sampler serves them all.
template <class Wrap>
bool repeats(const std::vector<LayerStep>& steps, Wrap wrap)
{
    bool any_image = false;
    for (const LayerStep& step : steps) {
        if (!step.image) continue;
        any_image = true;
        if (step.*wrap) return true;
    }
    return !any_image;
}

double fraction(double x)
{
    return x - std::floor(x);
}

} // namespace

SlotPlan plan_slot(std::vector<LayerStep> steps, uint32_t longest, bool inside)
{
    SlotPlan plan;
    plan.repeat_u = repeats(steps, &LayerStep::wrap_u);
    plan.repeat_v = repeats(steps, &LayerStep::wrap_v);
    plan.mipmap = std::any_of(steps.begin(), steps.end(), [](const LayerStep& step) { return step.mipmap; });
    if (!has_procedural(steps) && same_repeats(steps)) {
        plan.uv_scale = steps.front().repeats;
        // Repeats count from the lower edge of the picture, and glTF's v from the upper one.
        plan.uv_offset[1] = 1 - plan.uv_scale[1];
        if (plan.repeat_v) plan.uv_offset[1] = fraction(plan.uv_offset[1]);
        for (LayerStep& step : steps) step.repeats = {1, 1};
        inside = inside && plan.uv_scale == std::array<double, 2>{1, 1};
    }
    if (inside) plan.repeat_u = plan.repeat_v = true; // no border, and the sampler makes no difference

    double width = 0, height = 0;
    for (const LayerStep& step : steps) {
        const double w = step.image ? step.image->width : procedural_side;
        const double h = step.image ? step.image->height : procedural_side;
        width = std::max(width, w * std::max(1.0, std::abs(step.repeats[0])));
        height = std::max(height, h * std::max(1.0, std::abs(step.repeats[1])));
    }
    // A procedural has no size of its own, and takes that of the images beside it.
    const bool any_image = std::any_of(steps.begin(), steps.end(), [](const LayerStep& step) { return step.image; });
    if (any_image && has_procedural(steps)) {
        width = height = 0;
        for (const LayerStep& step : steps) {
            if (!step.image) continue;
            width = std::max(width, step.image->width * std::max(1.0, std::abs(step.repeats[0])));
            height = std::max(height, step.image->height * std::max(1.0, std::abs(step.repeats[1])));
        }
    }
    const uint32_t room_u = plan.repeat_u || longest <= 3 ? 0 : 2, room_v = plan.repeat_v || longest <= 3 ? 0 : 2;
    plan.width = limited(width, longest - room_u);
    plan.height = limited(height, longest - room_v);
    const auto make_room = [](double& scale, double& offset, uint32_t size) {
        const double share = size / (size + 2.0), start = 1 / (size + 2.0);
        scale *= share;
        offset = offset * share + start;
    };
    if (!plan.repeat_u) make_room(plan.uv_scale[0], plan.uv_offset[0], plan.width);
    if (!plan.repeat_v) make_room(plan.uv_scale[1], plan.uv_offset[1], plan.height);
    plan.mipmap = plan.mipmap && plan.repeat_u && plan.repeat_v;
    plan.steps = std::move(steps);
    return plan;
}

ImageFile* image_as_it_is(const SlotPlan& plan)
{
    if (plan.steps.size() != 1 || !plan.repeat_u || !plan.repeat_v) return nullptr;
    const LayerStep& step = plan.steps.front();
    if (step.target != LayerTarget::color && step.target != LayerTarget::emission) return nullptr;
    const bool plain = step.weight >= 1 && step.multiplier == std::array<float, 3>{1, 1, 1};
    const bool whole = step.repeats == std::array<double, 2>{1, 1};
    return plain && whole ? step.image : nullptr;
}

std::string recipe_key(SlotKind kind, const SlotPlan& plan, const PlainSurface& plain,
                       const tv::TextureProjection& frame)
{
    std::string key;
    append_bytes(key, kind);
    append_bytes(key, plan.width);
    append_bytes(key, plan.height);
    append_bytes(key, plan.repeat_u);
    append_bytes(key, plan.repeat_v);
    append_bytes(key, plain.color);
    for (const float x : {plain.diffuse, plain.opacity, plain.luminous, plain.specular}) append_bytes(key, x);
    for (const LayerStep& step : plan.steps) {
        append_bytes(key, step.target);
        append_bytes(key, step.image);
        append_bytes(key, step.multiplier);
        append_bytes(key, step.weight);
        append_bytes(key, step.invert);
        append_bytes(key, step.repeats);
        append_bytes(key, step.wrap_u);
        append_bytes(key, step.wrap_v);
        if (!step.procedural) continue;
        const Procedural& p = *step.procedural;
        append_bytes(key, p.kind);
        for (const glm::dvec3* triple : {&p.color1, &p.color2, &p.scale, &p.translate}) append_bytes(key, *triple);
        append_bytes(key, p.param1);
        append_bytes(key, p.param2);
    }
    if (!has_procedural(plan.steps)) return key;
    append_frame(key, frame);
    return key;
}

} // namespace gltf
