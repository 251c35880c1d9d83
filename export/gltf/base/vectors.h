// What glm has no word for.
#pragma once
#include <array>
#include <cmath>
#include <glm/geometric.hpp>
#include <glm/vec3.hpp>

namespace gltf {

inline glm::dvec3 vector_of(const std::array<float, 3>& v)
{
    return {v[0], v[1], v[2]};
}

inline bool is_finite(const glm::dvec3& v)
{
    return std::isfinite(v.x) && std::isfinite(v.y) && std::isfinite(v.z);
}

// Length 1, or zero where there is no direction.
inline glm::dvec3 direction_of(const glm::dvec3& v)
{
    const double size = glm::length(v);
    return size > 0 ? v * (1 / size) : glm::dvec3(0);
}

} // namespace gltf
