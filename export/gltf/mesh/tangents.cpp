#include "export/gltf/mesh/tangents.h"

#include <cmath>
#include <glm/geometric.hpp>

#include "export/gltf/base/vectors.h"

namespace gltf {

bool is_mirrored(const std::array<Uv, 3>& uv)
{
    // v runs down the picture, so that one that isn't mirrored runs clockwise in u and v.
    return (uv[1].u - uv[0].u) * (uv[2].v - uv[0].v) - (uv[2].u - uv[0].u) * (uv[1].v - uv[0].v) > 0;
}

std::vector<float> vertex_tangents(const VertexTable& vertices, std::span<const uint32_t> indices)
{
    std::vector<glm::dvec3> sums(vertices.size(), glm::dvec3(0));
    for (std::size_t i = 0; i + 2 < indices.size(); i += 3) {
        const Vertex& a = vertices[indices[i]];
        const Vertex& b = vertices[indices[i + 1]];
        const Vertex& c = vertices[indices[i + 2]];
        const glm::dvec3 ab = vector_of(b.position) - vector_of(a.position);
        const glm::dvec3 ac = vector_of(c.position) - vector_of(a.position);
        const double v_ab = static_cast<double>(b.uv[1]) - static_cast<double>(a.uv[1]);
        const double v_ac = static_cast<double>(c.uv[1]) - static_cast<double>(a.uv[1]);
        // The direction in which u rises, times the area that the triangle has in the picture.
        const glm::dvec3 along = (ab * v_ac - ac * v_ab) * (a.mirrored() ? 1.0 : -1.0);
        const double length = glm::length(along), area = glm::length(glm::cross(ab, ac));
        if (!(length > 0) || !std::isfinite(length)) continue;
        for (std::size_t k = 0; k < 3; ++k) sums[indices[i + k]] += along * (area / length);
    }
    std::vector<float> result;
    result.reserve(4 * vertices.size());
    for (std::size_t i = 0; i < vertices.size(); ++i) {
        const glm::dvec3 normal = vector_of(vertices[i].normal);
        glm::dvec3 tangent = sums[i] - normal * glm::dot(normal, sums[i]);
        if (!(glm::length(tangent) > 1e-12 * glm::length(sums[i])) || !std::isfinite(glm::length(tangent)))
            tangent = glm::cross(normal, std::abs(normal.x) < 0.6 ? glm::dvec3(1, 0, 0) : glm::dvec3(0, 1, 0));
        tangent = glm::normalize(tangent);
        for (int k = 0; k < 3; ++k) result.push_back(static_cast<float>(tangent[k]));
        result.push_back(vertices[i].mirrored() ? -1.0f : 1.0f);
    }
    return result;
}

} // namespace gltf
