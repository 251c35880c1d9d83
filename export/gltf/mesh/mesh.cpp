#include "export/gltf/mesh/mesh.h"

#include <algorithm>
#include <cmath>
#include <glm/geometric.hpp>
#include <glm/matrix.hpp>

#include "export/gltf/base/byte_key.h"
#include "export/gltf/base/notes.h"
#include "export/gltf/base/transform.h"
#include "export/gltf/material/projection_uv.h"
#include "export/gltf/mesh/tangents.h"
#include "export/gltf/mesh/vertex_table.h"
#include "lib/platform/latin1.h"
#include "lib/toolkit/units.h"

namespace gltf {

struct MeshMaker::Group {
    tv::Id surface = tv::no_id;
    bool uv = false;    // the surface has layers, and the instance a frame to lay them out
    bool bumpy = false; // a layer may become a normal map: mirrored triangles need vertices of their own
    bool inside = true; // all texture coordinates lie within 0..1
    VertexTable vertices;
    std::vector<uint32_t> indices;
    std::vector<float> morph; // x, y, z a vertex: what full morph adds to its position; empty: no morph target
};

struct MeshMaker::Build {
    const tv::Object* object = nullptr;
    const tv::TextureProjection* frame = nullptr; // null: no texture coordinates
    UvProjector projector;
    glm::dmat4 to_frame{1}; // from the primitive's space to the frame's
    glm::dmat3 normal_to_frame{1};
    std::vector<Group> groups; // one for each surface, in the order in which polygons name them
    std::unordered_map<tv::Id, std::size_t> group_of;
    PolygonFaults* faults = nullptr;

    // The polygon at work. After its corners come the points that tessellation added.
    std::vector<glm::dvec3> points, normals;
    std::vector<glm::dvec3> morph;      // of each point; empty: no morph target
    std::vector<uint32_t> point_names;  // what keeps points apart that morph differently; beside `morph`
    uint32_t points_named = 0;          // of the object's primitives so far, and of what tessellation added
    glm::dvec3 polygon_normal{0, 0, 0}; // unit
    Triangles triangles;
};

namespace {

bool has_layers(const tv::Scene& scene, tv::Id surface)
{
    return surface < scene.surfaces.size() && !scene.surfaces[surface].layers.empty();
}

bool has_bump(const tv::Surface& surface)
{
    return std::any_of(surface.layers.begin(), surface.layers.end(), [](const tv::Layer& layer) {
        const auto on = [&](tv::LayerChannel channel) {
            return layer.channels[static_cast<std::size_t>(channel)].enabled;
        };
        return on(tv::LayerChannel::bump) || on(tv::LayerChannel::bump_u) || on(tv::LayerChannel::bump_v);
    });
}

std::array<float, 3> floats_of(const glm::dvec3& v)
{
    return {file_float(v.x), file_float(v.y), file_float(v.z)};
}

// Points and normals of what tessellation added, after those of the corners.
void mix_added(const Triangles& triangles, std::vector<glm::dvec3>& points, std::vector<glm::dvec3>& normals,
               const glm::dvec3& polygon_normal)
{
    for (const Triangles::Added& added : triangles.added) {
        glm::dvec3 point(0), normal(0);
        for (std::size_t i = 0; i < 4; ++i)
            if (added.weight[i] != 0) {
                point += added.weight[i] * points[added.from[i]];
                normal += added.weight[i] * normals[added.from[i]];
            }
        const double length = glm::length(normal);
        points.push_back(point);
        normals.push_back(length > 1e-6 ? normal / length : polygon_normal);
    }
}

// The same for how they morph; what was added is nobody else's point.
void mix_added_morphs(const Triangles& triangles, std::vector<glm::dvec3>& morph, std::vector<uint32_t>& names,
                      uint32_t& named)
{
    for (const Triangles::Added& added : triangles.added) {
        glm::dvec3 mixed(0);
        for (std::size_t i = 0; i < 4; ++i)
            if (added.weight[i] != 0) mixed += added.weight[i] * morph[added.from[i]];
        morph.push_back(mixed);
        names.push_back(++named);
    }
}

} // namespace

MeshMaker::MeshMaker(const tv::Scene& scene, const Options& options, MaterialMaker& materials, Tables& tables,
                     Report& report, std::function<void()> poll)
    : scene_(scene), scale_(options.scale), materials_(materials), tables_(tables), report_(report),
      poll_(std::move(poll))
{
}

const std::vector<tv::Id>& MeshMaker::surfaces_of(tv::Id id)
{
    const auto [entry, added] = surfaces_.try_emplace(id);
    if (!added) return entry->second;
    const tv::Object& object = scene_.objects[id];
    std::vector<tv::Id>& list = entry->second;
    list.push_back(object.surface);
    for (const tv::Primitive& primitive : object.primitives)
        for (std::size_t i = 0; i < primitive.polygon_surface.size(); ++i)
            if (i == 0 || primitive.polygon_surface[i] != primitive.polygon_surface[i - 1])
                list.push_back(primitive.polygon_surface[i]);
    std::sort(list.begin(), list.end());
    list.erase(std::unique(list.begin(), list.end()), list.end());
    return list;
}

uint32_t MeshMaker::mesh(tv::Id id, const tv::TextureProjection& projection, const std::array<double, 16>& world,
                         const MeshLook& look)
{
    if (id >= scene_.objects.size() || scene_.objects[id].primitives.empty()) return none;
    const std::vector<tv::Id>& surfaces = surfaces_of(id);
    const bool framed = projection.enabled && std::any_of(surfaces.begin(), surfaces.end(),
                                                          [&](tv::Id surface) { return has_layers(scene_, surface); });
    // What the mesh depends on, byte for byte.
    std::string key;
    append_bytes(key, id);
    append_bytes(key, look.opacity);
    append_bytes(key, look.fades);
    if (framed) {
        append_frame(key, projection);
        if (projection.world_space) append_bytes(key, world);
    }
    const auto [entry, added] = made_.try_emplace(std::move(key), none);
    if (added) entry->second = build(id, framed ? &projection : nullptr, world, look);
    return entry->second;
}

uint32_t MeshMaker::build(tv::Id id, const tv::TextureProjection* frame, const std::array<double, 16>& world,
                          const MeshLook& look)
{
    const tv::Object& object = scene_.objects[id];
    Build build;
    build.object = &object;
    build.frame = frame;
    if (frame) {
        build.projector = make_projector(*frame);
        if (frame->world_space) {
            build.to_frame = to_glm(world);
            const glm::dmat3 linear_part(build.to_frame);
            if (glm::determinant(linear_part) != 0) build.normal_to_frame = glm::inverse(glm::transpose(linear_part));
        }
    }
    PolygonFaults repeated;
    const bool first_time = counted_.insert(id).second;
    build.faults = first_time ? &faults_ : &repeated;
    const std::size_t faults_before = faults_.total(), tangled_before = faults_.tangled;
    for (std::size_t i = 0; i < object.primitives.size(); ++i) add_primitive(i, build);
    Mesh mesh;
    mesh.name = platform::latin1_to_utf8(object.shown_name.empty() ? object.name : object.shown_name);
    if (faults_before == 0 && faults_.total() != 0) faults_.first_object = mesh.name;
    if (tangled_before == 0 && faults_.tangled != 0) faults_.first_tangled_object = mesh.name;
    for (Group& group : build.groups) {
        if (group.indices.empty()) continue;
        report_.triangles += group.indices.size() / 3;
        mesh.primitives.push_back(store(group, frame, look));
        group = {}; // its memory is not wanted any longer
    }
    if (mesh.primitives.empty()) return none;
    // One primitive of the object without a target would leave the mesh without a sound number of them.
    const bool all = std::all_of(mesh.primitives.begin(), mesh.primitives.end(),
                                 [](const Primitive& primitive) { return !primitive.targets.empty(); });
    if (!all)
        for (Primitive& primitive : mesh.primitives) primitive.targets.clear();
    tables_.meshes.push_back(std::move(mesh));
    return static_cast<uint32_t>(tables_.meshes.size() - 1);
}

void MeshMaker::add_primitive(std::size_t number, Build& build)
{
    const tv::Primitive& primitive = build.object->primitives[number];
    const bool morphs = number < build.object->morph_target.size() &&
                        build.object->morph_target[number].size() == primitive.positions.size();
    const std::vector<float>* const target = morphs ? &build.object->morph_target[number] : nullptr;
    const uint32_t first_name = build.points_named + 1;
    build.points_named += static_cast<uint32_t>(primitive.positions.size() / 3);
    const CleanPolygons polygons = clean_polygons(primitive, build.object->surface, scale_, *build.faults);
    const tv::PolygonView view = polygons.view();
    std::vector<float> smooth; // a normal for each corner; empty: flat
    if (const auto angle = build.object->smoothing_angle; angle && *angle > 0 && !polygons.corners.empty()) {
        constexpr auto radians = static_cast<float>(tv::radians_per_degree), half_turn = static_cast<float>(tv::pi);
        smooth.resize(3 * polygons.corners.size());
        tv::corner_normals(view, std::min(*angle * radians, half_turn), smooth);
    }

    std::size_t first = 0, group = 0;
    for (std::size_t polygon = 0; polygon < polygons.sizes.size(); ++polygon) {
        const auto size = static_cast<std::size_t>(polygons.sizes[polygon]);
        const tv::Id surface = polygons.surfaces[polygon];
        if (build.groups.empty() || build.groups[group].surface != surface) {
            const auto [entry, added] = build.group_of.try_emplace(surface, build.groups.size());
            group = entry->second;
            if (added) {
                Group& made = build.groups.emplace_back();
                made.surface = surface;
                made.uv = build.frame && has_layers(scene_, surface);
                made.bumpy = made.uv && has_bump(scene_.surfaces[surface]);
            }
        }

        double newell[3];
        tv::polygon_normal(view, first, size, newell);
        // By the largest part first: the length of a very small or large one would be lost.
        const double largest = std::max({std::abs(newell[0]), std::abs(newell[1]), std::abs(newell[2])});
        build.polygon_normal = glm::normalize(glm::dvec3(newell[0], newell[1], newell[2]) / largest);
        build.points.clear();
        build.normals.clear();
        build.morph.clear();
        build.point_names.clear();
        for (std::size_t i = first; i < first + size; ++i) {
            const auto point = static_cast<std::size_t>(polygons.corners[i] - 1);
            const float* const p = primitive.positions.data() + 3 * point;
            build.points.emplace_back(p[0], p[1], p[2]);
            if (target) {
                const float* const to = target->data() + 3 * point;
                build.morph.push_back(glm::dvec3(to[0], to[1], to[2]) - build.points.back());
                build.point_names.push_back(first_name + static_cast<uint32_t>(point));
            }
            if (smooth.empty())
                build.normals.push_back(build.polygon_normal);
            else
                build.normals.emplace_back(smooth[3 * i], smooth[3 * i + 1], smooth[3 * i + 2]);
        }
        first += size;
        constexpr std::size_t corners_a_poll = 8192;
        if ((corners_done_ += size) >= corners_a_poll) {
            corners_done_ = 0;
            poll_();
        }
        const auto filling = tessellator_.polygon(build.points, build.polygon_normal, build.triangles);
        if (filling == Tessellator::Filling::empty) {
            ++build.faults->no_area;
            continue;
        }
        if (filling == Tessellator::Filling::fan) ++build.faults->tangled;
        mix_added(build.triangles, build.points, build.normals, build.polygon_normal);
        if (target) mix_added_morphs(build.triangles, build.morph, build.point_names, build.points_named);
        add_triangles(build.groups[group], build);
    }
}

void MeshMaker::add_triangles(Group& group, Build& build)
{
    for (const std::array<uint32_t, 3>& triangle : build.triangles.list) {
        std::array<Uv, 3> uv;
        if (group.uv) {
            std::array<glm::dvec3, 3> points;
            for (std::size_t i = 0; i < 3; ++i)
                points[i] = glm::dvec3(build.to_frame * glm::dvec4(build.points[triangle[i]], 1));
            project_triangle(build.projector, points, build.normal_to_frame * build.polygon_normal, uv);
            for (const Uv& corner : uv)
                group.inside &= corner.u >= 0 && corner.u <= 1 && corner.v >= 0 && corner.v <= 1;
        }
        const bool mirrored = group.bumpy && is_mirrored(uv);
        std::array<uint32_t, 3> numbers;
        for (std::size_t i = 0; i < 3; ++i) {
            Vertex vertex;
            vertex.position = floats_of(build.points[triangle[i]] * scale_);
            vertex.normal = floats_of(build.normals[triangle[i]]);
            vertex.uv = {file_float(uv[i].u), file_float(uv[i].v)};
            vertex.apart = mirrored ? 1 : 0;
            if (!build.morph.empty()) vertex.apart |= build.point_names[triangle[i]] << 1;
            const auto number = group.vertices.add(vertex);
            if (!number)
                throw messages::Error(message<"vertices-too-many">(platform::latin1_to_utf8(build.object->name)));
            numbers[i] = *number;
            if (!build.morph.empty() && 3 * std::size_t{*number} == group.morph.size())
                for (int k = 0; k < 3; ++k) group.morph.push_back(file_float(build.morph[triangle[i]][k] * scale_));
        }
        // Corners that fall together leave a triangle nobody sees.
        if (numbers[0] == numbers[1] || numbers[1] == numbers[2] || numbers[2] == numbers[0]) continue;
        group.indices.insert(group.indices.end(), numbers.begin(), numbers.end());
    }
}

Primitive MeshMaker::store(Group& group, const tv::TextureProjection* frame, const MeshLook& look)
{
    const MadeMaterial made =
        materials_.material(group.surface, group.uv ? frame : nullptr, group.inside, {look.opacity, look.fades});
    Primitive result;
    result.material = made.material;
    const std::size_t count = group.vertices.size();
    std::vector<float> values(3 * count);
    for (std::size_t i = 0; i < count; ++i)
        std::copy_n(group.vertices[i].position.begin(), 3, values.begin() + static_cast<std::ptrdiff_t>(3 * i));
    result.position = tables_.buffer.add(Stretch::vec3, Element::vec3, values, true);
    for (std::size_t i = 0; i < count; ++i)
        std::copy_n(group.vertices[i].normal.begin(), 3, values.begin() + static_cast<std::ptrdiff_t>(3 * i));
    result.normal = tables_.buffer.add(Stretch::vec3, Element::vec3, values, false);
    if (group.uv && made.textured) {
        values.resize(2 * count);
        for (std::size_t i = 0; i < count; ++i)
            std::copy_n(group.vertices[i].uv.begin(), 2, values.begin() + static_cast<std::ptrdiff_t>(2 * i));
        result.uv = tables_.buffer.add(Stretch::vec2, Element::vec2, values, false);
        if (made.tangents)
            result.tangent =
                tables_.buffer.add(Stretch::vec4, Element::vec4, vertex_tangents(group.vertices, group.indices), false);
    }
    if (group.morph.size() == 3 * count)
        result.targets.push_back(tables_.buffer.add(Stretch::vec3, Element::vec3, group.morph, true));
    result.indices = tables_.buffer.add_indices(group.indices);
    return result;
}

void MeshMaker::finish()
{
    if (faults_.tangled != 0)
        report_.notes.push_back(message<"polygons-tangled">(faults_.tangled, faults_.first_tangled_object));
    if (faults_.total() == 0) return;
    std::vector<messages::Message> reasons;
    if (faults_.few_points != 0) reasons.push_back(message<"polygons-of-few-points">(faults_.few_points));
    if (faults_.bad_index != 0) reasons.push_back(message<"polygons-of-no-points">(faults_.bad_index));
    if (faults_.not_finite != 0) reasons.push_back(message<"polygons-not-finite">(faults_.not_finite));
    if (faults_.no_area != 0) reasons.push_back(message<"polygons-of-no-area">(faults_.no_area));
    report_.notes.push_back(message<"polygons-left-out">(faults_.total(), std::move(reasons), faults_.first_object));
}

} // namespace gltf
