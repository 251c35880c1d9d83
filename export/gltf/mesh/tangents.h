// Tangent space for normal maps, which glTF wants with the mesh where it is to look the same everywhere.
#pragma once
#include <array>
#include <cstdint>
#include <span>
#include <vector>

#include "export/gltf/material/projection_uv.h"
#include "export/gltf/mesh/vertex_table.h"

namespace gltf {

// Seen from its front the triangle shows the picture mirrored.
bool is_mirrored(const std::array<Uv, 3>& uv);

// Four numbers for each vertex: where the picture's u runs, at a right angle to the normal and of length 1, and the side of
// its upward direction: +1, or -1 on mirrored triangles. Triangles weigh by area.
std::vector<float> vertex_tangents(const VertexTable& vertices, std::span<const uint32_t> indices);

} // namespace gltf
