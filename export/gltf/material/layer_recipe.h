// A surface's layers, sorted by the glTF slot that they act on: what is to be mixed, told in numbers alone.
#pragma once
#include <array>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "export/gltf/image/image_store.h"
#include "export/gltf/material/layer_procedural.h"
#include "lib/toolkit/scene/scene.h"

namespace gltf {

// Of one surface. More is nothing that a person has made, and each costs a pass over the picture.
inline constexpr std::size_t most_layers = 64;

enum class LayerTarget : uint8_t { color, diffuse, opacity, emission, specular, bump };

// One layer's act on one target. `value` below is the texture's colour, or its grey, 0 to 1; `old` what the surface and
// the layers before have given:
//   color, emission    old + weight * (multiplier * value - old), for each of red, green, blue
//   diffuse, specular  old + weight * (multiplier * grey - old)
//   opacity            old + weight * (1 - multiplier * t - old), where t is how transparent the texture says: its grey,
//                      inverted unless `invert` is set (a bright picture is see-through when inverted)
//   bump               height rises by multiplier * grey, the first number for slopes along u and the second along v
struct LayerStep {
    LayerTarget target = LayerTarget::color;
    ImageFile* image = nullptr;           // null: procedural
    std::optional<Procedural> procedural; // the other one
    std::array<float, 3> multiplier{1, 1, 1};
    float weight = 1;
    bool invert = false;
    std::array<double, 2> repeats{1, 1}; // how often the image lies in a unit of u and v; negative: mirrored
    bool wrap_u = true, wrap_v = true;   // else the layer doesn't act outside its one image
    bool mipmap = true;
};

// What the surface gives where no layer acts, 0 to 1.
struct PlainSurface {
    std::array<float, 3> color{1, 1, 1};
    float diffuse = 1, opacity = 1, luminous = 0, specular = 0;
};

struct SurfaceRecipe {
    PlainSurface plain;
    std::vector<LayerStep> steps; // in order, those that can't show left out
    bool has_procedural = false;
};

// Opens the images. What is left out and could be missed goes into the notes.
SurfaceRecipe make_recipe(const tv::Scene& scene, const tv::Surface& surface, ImageStore& store, NoteBook& notes);

// The steps of some targets, in order, without those that a later one hides.
std::vector<LayerStep> steps_of(const SurfaceRecipe& recipe, const std::vector<LayerTarget>& targets);

} // namespace gltf
