// Bump heights to normals.
#pragma once
#include <array>
#include <cstdint>
#include <span>

#include "export/gltf/image/image_pixels.h"

namespace gltf {

// Heights of bumps, row by row from the top: those whose slope along u counts, and those for v.
struct Heights {
    uint32_t width = 0, height = 0;
    std::span<const float> along_u, along_v;
    bool wrap_u = true, wrap_v = true; // neighbours beyond an edge are those of the other end, else the edge itself
};

inline constexpr std::array<unsigned char, 4> flat_normal = {128, 128, 255, 255};

// A tangent space normal map as glTF has it: red to the right of the picture, green up, blue out of it. A slope that
// rises to the right leans to the left. A height of 1/4 from black to white over 1/32 of the longer side is 14 degrees:
// slopes count by the picture's size and not by its pixels, so that a finer scan of the same picture looks the same.
Pixels normals_of(const Heights& heights);

} // namespace gltf
