// One glTF animation sampler at one time.
#pragma once
#include <cstddef>
#include <cstdint>
#include <span>

#include "export/gltf/file/tables.h"

namespace picture {

enum class Interpolation : uint8_t { linear, step, cubic };

// Views only: the arrays belong to the tables' buffer.
struct Keys {
    std::span<const float> times;  // seconds, rising
    std::span<const float> values; // `width` numbers a key; cubic: slope in, value, slope out, `width` numbers each
    std::size_t width = 0;         // 1 to 4
    Interpolation interpolation = Interpolation::linear;
};

// Empty keys where the sampler's accessors don't fit together.
Keys keys_of(const gltf::Tables& tables, const gltf::AnimationSampler& sampler);

// Writes `width` numbers. Before the first key and after the last one their values hold. False, and nothing written,
// where there are no keys or `time` isn't a number. `rotation`: unit quaternions, turned through the shorter arc.
bool value_at(const Keys& keys, double time, bool rotation, std::span<double> out);

} // namespace picture
