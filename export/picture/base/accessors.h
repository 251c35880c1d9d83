// The tables' vertex data as arrays. Views only: they are good while the buffer lives.
#pragma once
#include <span>
#include <vector>

#include "export/gltf/file/buffer.h"

namespace picture {

// All numbers, element after element. Empty for gltf::none.
std::span<const float> floats_of(const gltf::Buffer& buffer, uint32_t accessor);

// The same where the accessor has `parts` numbers an element and `count` elements; else nothing.
std::span<const float> floats_of(const gltf::Buffer& buffer, uint32_t accessor, std::size_t parts, std::size_t count);

// Widened to 32 bits.
std::vector<uint32_t> indices_of(const gltf::Buffer& buffer, uint32_t accessor);

} // namespace picture
