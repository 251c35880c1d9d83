#include "export/picture/scene/mesh_trees.h"

#include <cmath>
#include <cstring>
#include <glm/common.hpp>
#include <new>
#include <stdexcept>

#include "export/picture/base/accessors.h"

namespace picture {

void check(RTCDevice device)
{
    const RTCError error = rtcGetDeviceError(device);
    if (error == RTC_ERROR_NONE) return;
    if (error == RTC_ERROR_OUT_OF_MEMORY) throw std::bad_alloc();
    throw std::runtime_error(error == RTC_ERROR_UNSUPPORTED_CPU
                                 ? "the ray library needs a processor with SSE2 at least"
                                 : "the ray library failed, error " + std::to_string(static_cast<int>(error)));
}

namespace {

// The tree's bounds are 32-bit floats with room for products; beyond this they would overflow.
constexpr float farthest = 1e18f;

bool usable(const float* point)
{
    return std::abs(point[0]) < farthest && std::abs(point[1]) < farthest && std::abs(point[2]) < farthest;
}

// Corner numbers of the good triangles.
std::vector<uint32_t> good_corners(std::span<const float> positions, std::vector<uint32_t> corners)
{
    const std::size_t points = positions.size() / 3;
    const auto good = [&](uint32_t corner) {
        return corner < points && usable(positions.data() + std::size_t{corner} * 3);
    };
    std::size_t kept = 0;
    for (std::size_t i = 0; i + 3 <= corners.size(); i += 3) {
        if (!good(corners[i]) || !good(corners[i + 1]) || !good(corners[i + 2])) continue;
        for (std::size_t k = 0; k < 3; ++k) corners[kept + k] = corners[i + k];
        kept += 3;
    }
    corners.resize(kept);
    return corners;
}

// One geometry of the tree; its number is that of the primitive.
void add_primitive(RTCDevice device, RTCScene tree, const gltf::Tables& tables, const gltf::Primitive& primitive,
                   bool see_through, RTCFilterFunctionN closest, RTCFilterFunctionN occluded, MeshTree& mesh)
{
    const gltf::Buffer& buffer = tables.buffer;
    const auto positions = floats_of(buffer, primitive.position);
    const std::vector<uint32_t> corners = good_corners(positions, indices_of(buffer, primitive.indices));
    if (corners.empty()) return;
    const std::size_t points = positions.size() / 3;

    const Geometry geometry(rtcNewGeometry(device, RTC_GEOMETRY_TYPE_TRIANGLE));
    check(device);
    // Its own copies: the library reads 16 bytes at the last vertex, and the buffer's blocks end where they end.
    void* const vertices = rtcSetNewGeometryBuffer(geometry.get(), RTC_BUFFER_TYPE_VERTEX, 0, RTC_FORMAT_FLOAT3,
                                                   3 * sizeof(float), points);
    void* const indices = rtcSetNewGeometryBuffer(geometry.get(), RTC_BUFFER_TYPE_INDEX, 0, RTC_FORMAT_UINT3,
                                                  3 * sizeof(uint32_t), corners.size() / 3);
    check(device);
    std::memcpy(vertices, positions.data(), points * 3 * sizeof(float));
    std::memcpy(indices, corners.data(), corners.size() * sizeof(uint32_t));

    Triangles result;
    result.positions = static_cast<const float*>(vertices);
    result.corners = static_cast<const uint32_t*>(indices);
    result.count = static_cast<uint32_t>(corners.size() / 3);
    result.normals = floats_of(buffer, primitive.normal, 3, points);
    result.uvs = floats_of(buffer, primitive.uv, 2, points);
    result.tangents = floats_of(buffer, primitive.tangent, 4, points);
    result.colors = floats_of(buffer, primitive.color, 3, points);
    result.surface = std::min(primitive.material, static_cast<uint32_t>(tables.materials.size()));
    for (const uint32_t corner : corners) {
        const float* const p = result.positions + std::size_t{corner} * 3;
        const glm::vec3 point(p[0], p[1], p[2]);
        const bool first = mesh.primitives.empty() && &corner == corners.data();
        mesh.lower = first ? point : glm::min(mesh.lower, point);
        mesh.upper = first ? point : glm::max(mesh.upper, point);
    }
    mesh.primitives.push_back(result);

    rtcSetGeometryIntersectFilterFunction(geometry.get(), closest);
    if (see_through) rtcSetGeometryOccludedFilterFunction(geometry.get(), occluded);
    rtcCommitGeometry(geometry.get());
    rtcAttachGeometryByID(tree, geometry.get(), static_cast<unsigned>(mesh.primitives.size() - 1));
    check(device);
}

} // namespace

MeshTrees::MeshTrees(const gltf::Tables& tables, const std::vector<bool>& wanted, const std::vector<bool>& see_through,
                     RTCFilterFunctionN closest, RTCFilterFunctionN occluded)
    : device_(rtcNewDevice(nullptr)), meshes_(tables.meshes.size())
{
    if (!device_) check(nullptr);
    for (std::size_t i = 0; i < meshes_.size(); ++i) {
        if (!wanted[i]) continue;
        MeshTree& mesh = meshes_[i];
        RayTree tree(rtcNewScene(device()));
        check(device());
        rtcSetSceneFlags(tree.get(), RTC_SCENE_FLAG_ROBUST);
        for (const gltf::Primitive& primitive : tables.meshes[i].primitives) {
            const uint32_t surface = std::min(primitive.material, static_cast<uint32_t>(tables.materials.size()));
            add_primitive(device(), tree.get(), tables, primitive, see_through[surface], closest, occluded, mesh);
        }
        if (mesh.primitives.empty()) continue;
        rtcCommitScene(tree.get());
        check(device());
        for (Triangles& triangles : mesh.primitives) triangles_ += triangles.count;
        mesh.tree = std::move(tree);
    }
}

} // namespace picture
