// How entangled a polygon is: filling one whose edges cross each other everywhere costs far more than it is worth.
#pragma once
#include <glm/vec2.hpp>
#include <span>

namespace gltf {

// True where the tessellation library, which sweeps along x, would take more than a few microseconds per corner, or
// would make more than a few triangles per corner: an ordinary mesh with one damaged number becomes such polygons, of thousands
// of corners. Coordinates about 1 in size. Its own time is in proportion to the corners too.
bool too_tangled(std::span<const glm::dvec2> outline);

} // namespace gltf
