#include "export/picture/shading/surface_point.h"

#include <algorithm>
#include <cfloat>
#include <cmath>
#include <glm/geometric.hpp>

namespace picture {

namespace {

// One triangle's corners and how much each of them counts.
struct Corners {
    const uint32_t* number;
    float share[3];

    template <typename Vector>
    Vector at(std::span<const float> array, int corner) const
    {
        Vector result;
        for (int i = 0; i < Vector::length(); ++i)
            result[i] = array[std::size_t{number[corner]} * Vector::length() + static_cast<std::size_t>(i)];
        return result;
    }
    template <typename Vector>
    Vector mean(std::span<const float> array) const
    {
        return at<Vector>(array, 0) * share[0] + at<Vector>(array, 1) * share[1] + at<Vector>(array, 2) * share[2];
    }
};

struct Shape {
    glm::vec3 corner[3]; // in the mesh's space
    glm::vec3 edge[2];   // from the first corner, divided by `size`: tiny triangles keep their digits
    float size = 1;
    glm::vec3 normal{0};     // of the smooth surface, the mesh's space, unit
    glm::vec3 world_edge[2]; // divided by `size` too
    float area = 0;          // of what these two span
};

glm::vec3 unit_or(const glm::vec3& v, const glm::vec3& other)
{
    const float square = glm::dot(v, v);
    return square > 0 && std::isfinite(square) ? v / std::sqrt(square) : other;
}

float largest(const glm::vec3& v)
{
    return std::max({std::abs(v.x), std::abs(v.y), std::abs(v.z)});
}

Shape shape_of(const Triangles& triangles, const Corners& corners, const Instance& instance)
{
    Shape shape;
    for (int i = 0; i < 3; ++i) {
        const float* const p = triangles.positions + std::size_t{corners.number[i]} * 3;
        shape.corner[i] = {p[0], p[1], p[2]};
    }
    for (int i = 0; i < 2; ++i) shape.edge[i] = shape.corner[i + 1] - shape.corner[0];
    const float size = std::max(largest(shape.edge[0]), largest(shape.edge[1]));
    if (size > 0) shape.size = size;
    for (int i = 0; i < 2; ++i) {
        shape.edge[i] /= shape.size;
        shape.world_edge[i] = instance.linear * shape.edge[i];
    }
    shape.area = glm::length(glm::cross(shape.world_edge[0], shape.world_edge[1]));
    const glm::vec3 face = unit_or(glm::cross(shape.edge[0], shape.edge[1]), {0, 0, 1});
    shape.normal = triangles.normals.empty() ? face : unit_or(corners.mean<glm::vec3>(triangles.normals), face);
    return shape;
}

// Texture coordinates of a place, and how densely they lie.
struct TexturePlace {
    glm::vec2 uv{0}, edge[2];
    float cone = 0; // width of the ray's cone in the surface, over the triangle's size

    glm::vec4 sample(const TextureRef& ref, const Stage& stage, float area) const
    {
        const TextureMap& map = stage.model().textures.map(ref.map);
        const glm::vec2 size = ref.scale * glm::vec2(map.width(), map.height());
        const glm::vec2 a = edge[0] * size, b = edge[1] * size;
        const float texels = std::abs(a.x * b.y - a.y * b.x);
        return map.at(uv * ref.scale + ref.offset, ref.wrap, area > 0 ? cone * std::sqrt(texels / area) : 1);
    }
};

// The normal map's normal; everything in the world, the front side's.
glm::vec3 bumpy(const glm::vec3& smooth, glm::vec3 bump, float strength, const Triangles& triangles,
                const Corners& corners, const Shape& shape, const TexturePlace& place, const Instance& instance)
{
    bump = bump * 2.0f - 1.0f;
    glm::vec3 along, up; // of the texture: to its right, to its upper side
    if (!triangles.tangents.empty()) {
        const auto tangent = corners.mean<glm::vec4>(triangles.tangents);
        along = glm::vec3(tangent);
        up = glm::cross(shape.normal, along) * (tangent.w < 0 ? -1.0f : 1.0f);
    } else {
        const glm::vec2 &a = place.edge[0], &b = place.edge[1];
        const float turn = a.x * b.y - a.y * b.x < 0 ? -1.0f : 1.0f;
        along = (shape.edge[0] * b.y - shape.edge[1] * a.y) * turn;
        up = (shape.edge[0] * b.x - shape.edge[1] * a.x) * turn; // against v, which runs downward
        along -= shape.normal * glm::dot(along, shape.normal);
        up -= shape.normal * glm::dot(up, shape.normal);
    }
    along = unit_or(instance.linear * along, glm::vec3(0));
    up = unit_or(instance.linear * up, glm::vec3(0));
    return unit_or(along * (bump.x * strength) + up * (bump.y * strength) + smooth * bump.z, smooth);
}

// J. Hanika, Hacking the Shadow Terminator, Ray Tracing Gems II, 2021: the point is moved onto the planes that the
// corners' normals mean, so that a coarse round body has no edges where its light ends.
glm::vec3 lift(const Triangles& triangles, const Corners& corners, const Shape& shape, const glm::vec3& point)
{
    glm::vec3 way(0);
    for (int i = 0; i < 3; ++i) {
        const glm::vec3 normal = unit_or(corners.at<glm::vec3>(triangles.normals, i), shape.normal);
        const float above = glm::dot(point - shape.corner[i], normal);
        if (above < 0) way -= normal * (above * corners.share[i]);
    }
    return way;
}

} // namespace

SurfacePoint surface_point(const Stage& stage, const Ray& ray, const Hit& hit)
{
    const Instance& instance = stage.instance(hit.instance);
    const Triangles& triangles = stage.triangles(hit.instance, hit.primitive);
    const Surface& surface = stage.surface(triangles.surface);
    const Corners corners{triangles.corners + std::size_t{hit.triangle} * 3, {1 - hit.u - hit.v, hit.u, hit.v}};
    const Shape shape = shape_of(triangles, corners, instance);

    SurfacePoint point;
    const glm::vec3 local =
        shape.corner[0] * corners.share[0] + shape.corner[1] * corners.share[1] + shape.corner[2] * corners.share[2];
    point.position = instance.linear * local + instance.position;
    point.face = unit_or(instance.normals * glm::cross(shape.edge[0], shape.edge[1]), -ray.direction);
    const float side = glm::dot(point.face, ray.direction) > 0 ? -1.0f : 1.0f;
    point.face *= side;
    // The rounding of the place itself, of the way to it, and of the mesh's placing.
    point.leave = 16 * FLT_EPSILON * std::max({largest(point.position), largest(instance.position), hit.distance});
    point.lifted = point.position;
    if (!triangles.normals.empty() && side > 0)
        point.lifted += instance.linear * lift(triangles, corners, shape, local);
    point.width = ray.width + ray.spread * hit.distance;

    point.base = surface.base;
    point.emission = surface.emission;
    point.reflectance = surface.reflectance;
    point.alpha = surface.alpha;
    point.strength = surface.strength;
    point.metallic = surface.metallic;
    point.roughness = surface.roughness;
    point.unlit = surface.unlit;
    point.normal = unit_or(instance.normals * shape.normal, point.face * side);
    if (!triangles.colors.empty()) point.base *= corners.mean<glm::vec3>(triangles.colors);
    if (!triangles.uvs.empty()) {
        TexturePlace place;
        place.uv = corners.mean<glm::vec2>(triangles.uvs);
        const auto first = corners.at<glm::vec2>(triangles.uvs, 0);
        for (int i = 0; i < 2; ++i) place.edge[i] = corners.at<glm::vec2>(triangles.uvs, i + 1) - first;
        const float slant = std::max(std::abs(glm::dot(point.face, ray.direction)), 1e-3f);
        place.cone = point.width / slant / shape.size;
        if (surface.base_map.map != gltf::none) {
            const glm::vec4 color = place.sample(surface.base_map, stage, shape.area);
            point.base *= glm::vec3(color);
            point.alpha *= color.w;
        }
        if (surface.emission_map.map != gltf::none)
            point.emission *= glm::vec3(place.sample(surface.emission_map, stage, shape.area));
        if (surface.strength_map.map != gltf::none) {
            const float share = place.sample(surface.strength_map, stage, shape.area).w;
            point.reflectance *= share;
            point.strength *= share;
        }
        if (surface.normal_map.map != gltf::none)
            point.normal = bumpy(point.normal, glm::vec3(place.sample(surface.normal_map, stage, shape.area)),
                                 surface.bumps, triangles, corners, shape, place, instance);
    }
    point.normal *= side;
    if (!surface.blend) point.alpha = 1;
    return point;
}

} // namespace picture
