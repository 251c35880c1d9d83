// Layers mixed into one picture for a slot of the material.
#pragma once
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "export/gltf/image/image_pixels.h"
#include "export/gltf/material/layer_recipe.h"

namespace gltf {

// The picture of a slot: how large it is, which part of it the steps fill, and how texture coordinates reach it.
struct SlotPlan {
    std::vector<LayerStep> steps; // repeats are those within the picture: {1, 1} where the slot's transform has them
    uint32_t width = 0, height = 0;
    bool repeat_u = true, repeat_v = true; // else there is a border of one pixel, at both ends, beyond width or height
    bool mipmap = true;
    std::array<double, 2> uv_scale{1, 1}, uv_offset{0, 0};
};

// `steps` isn't empty. `inside`: nothing is looked up outside 0..1, so no border is needed. `longest`: of the picture.
SlotPlan plan_slot(std::vector<LayerStep> steps, uint32_t longest, bool inside);

// The one image that a slot can show as it is, or null.
ImageFile* image_as_it_is(const SlotPlan& plan);

// What the picture of a slot holds.
enum class SlotKind : uint8_t {
    base,     // colour, times diffuse where a step acts on it; opacity in alpha
    emission, // colour
    specular, // strength in alpha, rgb white
    normal    // tangent space, green up
};

// Equal keys give equal pictures.
std::string recipe_key(SlotKind kind, const SlotPlan& plan, const PlainSurface& plain,
                       const tv::TextureProjection& frame);

// The slot's picture with its border. Nothing when an image has become unreadable in between.
std::optional<Pixels> compose(SlotKind kind, const SlotPlan& plan, const PlainSurface& plain,
                              const tv::TextureProjection& frame, ImageStore& store);

} // namespace gltf
