// The tables' meshes as ray trees, each in its own space: shared by all nodes that bear it, and by all frames.
#pragma once
#include <glm/vec3.hpp>
#include <span>
#include <vector>

#include "export/gltf/file/tables.h"
#include "export/picture/scene/ray_library.h"

namespace picture {

// A primitive. Arrays belong to the ray tree or to the tables' buffer.
struct Triangles {
    const float* positions = nullptr;                      // 3 a vertex
    const uint32_t* corners = nullptr;                     // 3 a triangle, all of them good
    uint32_t count = 0;                                    // triangles
    std::span<const float> normals, uvs, tangents, colors; // 3, 2, 4, 3 a vertex; or empty
    uint32_t surface = 0;
};

struct MeshTree {
    RayTree tree;                      // null: nothing to be seen
    std::vector<Triangles> primitives; // numbered as the tree's geometries
    glm::vec3 lower{0}, upper{0};
};

class MeshTrees {
public:
    // Only meshes marked in `wanted` are built. `see_through`, by surface: rays through it ask the occlusion filter.
    // Triangles with corners that aren't numbers, or aren't there, are left out. Throws as check() does.
    MeshTrees(const gltf::Tables& tables, const std::vector<bool>& wanted, const std::vector<bool>& see_through,
              RTCFilterFunctionN closest, RTCFilterFunctionN occluded);

    RTCDevice device() const { return device_.get(); }
    const std::vector<MeshTree>& meshes() const { return meshes_; }
    std::size_t triangles() const { return triangles_; }

private:
    Device device_; // before the meshes: they go first
    std::vector<MeshTree> meshes_;
    std::size_t triangles_ = 0;
};

} // namespace picture
