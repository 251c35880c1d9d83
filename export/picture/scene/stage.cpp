#include "export/picture/scene/stage.h"

#include <array>
#include <cmath>
#include <glm/geometric.hpp>

#include "export/picture/scene/ray_filters.h"

namespace picture {

namespace {

bool finite(const glm::dmat4& matrix)
{
    for (int i = 0; i < 4; ++i)
        for (int k = 0; k < 3; ++k)
            if (!(std::abs(matrix[i][k]) < 1e18)) return false;
    return true;
}

// A mesh pressed flat on one axis is still to be seen, but the ray library turns rays into the mesh's space and has to
// come back: such an axis gets a little thickness. False where there is less left than a flat thing.
bool made_regular(glm::dmat4& world)
{
    constexpr double thinnest = 1e-6;
    double length[3] = {};
    for (int i = 0; i < 3; ++i) length[i] = glm::length(glm::dvec3(world[i]));
    int thin = 0;
    for (int i = 1; i < 3; ++i)
        if (length[i] < length[thin]) thin = i;
    const int one = (thin + 1) % 3, other = (thin + 2) % 3;
    const glm::dvec3 across = glm::cross(glm::dvec3(world[one]), glm::dvec3(world[other]));
    const double area = glm::length(across), size = std::max(length[one], length[other]);
    if (!(area > size * size * thinnest)) return false;
    const double height = glm::dot(across, glm::dvec3(world[thin])) / area;
    const double least = size * thinnest;
    if (!(std::abs(height) >= least))
        world[thin] += glm::dvec4(across / area * (std::copysign(least, height) - height), 0);
    return true;
}

Instance make_instance(const MeshTree& mesh, const glm::dmat4& world)
{
    Instance result;
    result.mesh = &mesh;
    result.linear = glm::mat3(glm::dmat3(world));
    result.position = glm::vec3(world[3]);
    const glm::dvec3 x(world[0]), y(world[1]), z(world[2]);
    const double volume = glm::dot(x, glm::cross(y, z));
    // The inverse transposed, up to a factor that is chosen so that the numbers stay near 1.
    const double unit = std::copysign(std::pow(std::abs(volume), -2.0 / 3), volume);
    result.normals = glm::mat3(glm::dmat3(glm::cross(y, z) * unit, glm::cross(z, x) * unit, glm::cross(x, y) * unit));
    return result;
}

RTCRay library_ray(const glm::vec3& origin, const glm::vec3& direction, float distance)
{
    RTCRay ray{};
    ray.org_x = origin.x;
    ray.org_y = origin.y;
    ray.org_z = origin.z;
    ray.dir_x = direction.x;
    ray.dir_y = direction.y;
    ray.dir_z = direction.z;
    ray.tfar = distance;
    ray.mask = ~0u;
    return ray;
}

} // namespace

Stage::Stage(const Model& model) : model_(model) {}

void Stage::set(const Pose& pose, const glm::dvec3& eye)
{
    const RTCDevice device = model_.meshes.device();
    tree_.reset(rtcNewScene(device));
    check(device);
    rtcSetSceneFlags(tree_.get(), RTC_SCENE_FLAG_ROBUST);
    instances_.clear();
    const std::vector<gltf::Node>& nodes = model_.tables.nodes;
    for (std::size_t i = 0; i < nodes.size(); ++i) {
        if (nodes[i].mesh >= model_.meshes.meshes().size() || !pose.placed[i]) continue;
        const MeshTree& mesh = model_.meshes.meshes()[nodes[i].mesh];
        glm::dmat4 world = pose.worlds[i];
        world[3] -= glm::dvec4(eye, 0);
        if (!mesh.tree || !finite(world) || !made_regular(world)) continue;
        const Geometry geometry(rtcNewGeometry(device, RTC_GEOMETRY_TYPE_INSTANCE));
        check(device);
        const Instance instance = make_instance(mesh, world);
        std::array<float, 12> columns{};
        for (int k = 0; k < 3; ++k) {
            for (int column = 0; column < 3; ++column)
                columns[static_cast<std::size_t>(column * 3 + k)] = instance.linear[column][k];
            columns[static_cast<std::size_t>(9 + k)] = instance.position[k];
        }
        rtcSetGeometryInstancedScene(geometry.get(), mesh.tree.get());
        rtcSetGeometryTransform(geometry.get(), 0, RTC_FORMAT_FLOAT3X4_COLUMN_MAJOR, columns.data());
        rtcCommitGeometry(geometry.get());
        rtcAttachGeometryByID(tree_.get(), geometry.get(), static_cast<unsigned>(instances_.size()));
        instances_.push_back(instance);
    }
    rtcCommitScene(tree_.get());
    check(device);
    lights_ = make_lights(model_.tables, pose, eye);
}

Hit Stage::closest(const Ray& ray) const
{
    RayContext context = make_context(*this, RTC_INTERSECT_CONTEXT_FLAG_INCOHERENT);
    RTCRayHit found{};
    found.ray = library_ray(ray.origin, ray.direction, HUGE_VALF);
    found.hit.geomID = RTC_INVALID_GEOMETRY_ID;
    rtcIntersect1(tree_.get(), &context.library, &found);
    Hit hit;
    if (found.hit.geomID == RTC_INVALID_GEOMETRY_ID) return hit;
    hit.distance = found.ray.tfar;
    hit.u = found.hit.u;
    hit.v = found.hit.v;
    hit.instance = found.hit.instID[0];
    hit.primitive = found.hit.geomID;
    hit.triangle = found.hit.primID;
    return hit;
}

void Stage::closest(std::span<const Ray> rays, Hit* hits) const
{
    RayContext context = make_context(*this, RTC_INTERSECT_CONTEXT_FLAG_COHERENT);
    alignas(32) int valid[packet] = {};
    RTCRayHit8 found;
    for (unsigned i = 0; i < packet; ++i) {
        const Ray& ray = rays[i < rays.size() ? i : 0];
        valid[i] = i < rays.size() ? -1 : 0;
        found.ray.org_x[i] = ray.origin.x;
        found.ray.org_y[i] = ray.origin.y;
        found.ray.org_z[i] = ray.origin.z;
        found.ray.dir_x[i] = ray.direction.x;
        found.ray.dir_y[i] = ray.direction.y;
        found.ray.dir_z[i] = ray.direction.z;
        found.ray.tnear[i] = 0;
        found.ray.tfar[i] = HUGE_VALF;
        found.ray.time[i] = 0;
        found.ray.mask[i] = ~0u;
        found.ray.id[i] = i;
        found.ray.flags[i] = 0;
        found.hit.geomID[i] = RTC_INVALID_GEOMETRY_ID;
        found.hit.instID[0][i] = RTC_INVALID_GEOMETRY_ID;
    }
    rtcIntersect8(valid, tree_.get(), &context.library, &found);
    for (std::size_t i = 0; i < rays.size(); ++i) {
        Hit& hit = hits[i];
        hit = {};
        if (found.hit.geomID[i] == RTC_INVALID_GEOMETRY_ID) continue;
        hit.distance = found.ray.tfar[i];
        hit.u = found.hit.u[i];
        hit.v = found.hit.v[i];
        hit.instance = found.hit.instID[0][i];
        hit.primitive = found.hit.geomID[i];
        hit.triangle = found.hit.primID[i];
    }
}

float Stage::passing(const glm::vec3& origin, const glm::vec3& direction, float distance) const
{
    RayContext context = make_context(*this, RTC_INTERSECT_CONTEXT_FLAG_INCOHERENT);
    RTCRay ray = library_ray(origin, direction, distance);
    rtcOccluded1(tree_.get(), &context.library, &ray);
    return ray.tfar < 0 ? 0 : context.passing;
}

std::vector<glm::dvec3> outline(const Model& model, const Pose& pose)
{
    constexpr std::size_t most_points = 1000000; // beyond, boxes stand for their meshes
    std::vector<glm::dvec3> points, unlit;
    const std::vector<gltf::Node>& nodes = model.tables.nodes;
    for (std::size_t i = 0; i < nodes.size(); ++i) {
        if (nodes[i].mesh >= model.meshes.meshes().size() || !pose.placed[i]) continue;
        const MeshTree& mesh = model.meshes.meshes()[nodes[i].mesh];
        if (!mesh.tree || !finite(pose.worlds[i])) continue;
        bool lit = false;
        std::size_t corners = 0;
        for (const Triangles& triangles : mesh.primitives) {
            lit = lit || !model.surfaces[triangles.surface].unlit;
            corners += std::size_t{triangles.count} * 3;
        }
        std::vector<glm::dvec3>& into = lit ? points : unlit;
        const auto add = [&](const glm::vec3& p) { into.emplace_back(pose.worlds[i] * glm::dvec4(p, 1)); };
        if (into.size() + corners > most_points) {
            for (unsigned k = 0; k < 8; ++k)
                add({(k & 1u ? mesh.upper : mesh.lower).x, (k & 2u ? mesh.upper : mesh.lower).y,
                     (k & 4u ? mesh.upper : mesh.lower).z});
            continue;
        }
        for (const Triangles& triangles : mesh.primitives)
            for (std::size_t k = 0; k < std::size_t{triangles.count} * 3; ++k) {
                const float* const p = triangles.positions + std::size_t{triangles.corners[k]} * 3;
                add({p[0], p[1], p[2]});
            }
    }
    return points.empty() ? unlit : points;
}

} // namespace picture
