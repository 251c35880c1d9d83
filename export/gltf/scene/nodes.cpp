#include "export/gltf/scene/nodes.h"

#include <cmath>
#include <stdexcept>

#include "export/gltf/base/notes.h"
#include "lib/platform/latin1.h"
#include "lib/toolkit/animation/animation.h"

namespace gltf {

std::vector<tv::Placement> all_places(double time)
{
    std::vector<tv::Placement> places;
    if (!tv::place_all(time, most_places, places))
        throw std::runtime_error("the scene has more than " + std::to_string(most_places) +
                                 " nodes: instances of objects that hold other instances multiply");
    return places;
}

void place_node(Node& node, const Placing& placing)
{
    for (int i = 0; i < 3; ++i) {
        node.translation[static_cast<std::size_t>(i)] = file_float(placing.translation[i]) + 0.0f; // no -0
        node.scale[static_cast<std::size_t>(i)] = file_float(placing.scale[i]);
    }
    const glm::dquat q = placing.rotation.w < 0 ? -placing.rotation : placing.rotation;
    node.rotation = {file_float(q.x), file_float(q.y), file_float(q.z), file_float(q.w)};
}

namespace {

std::array<float, 3> pivot_of(const tv::Instance& instance, double scale)
{
    if (!instance.axes.origin_enabled) return {0, 0, 0};
    std::array<float, 3> pivot;
    for (std::size_t i = 0; i < 3; ++i)
        pivot[i] = file_float(-scale * static_cast<double>(instance.axes.axes_matrix[3][i])) + 0.0f;
    return pivot;
}

} // namespace

void make_nodes(const tv::Scene& scene, const std::vector<tv::Placement>& places, double scale, Animator& animator,
                MeshMaker& meshes, Tables& tables, Report& report, const PlaceProgress& progress)
{
    std::vector<uint32_t> holder(places.size(), none); // the node that takes the children of a place
    std::size_t not_finite = 0;
    tables.nodes.reserve(tables.nodes.size() + places.size());
    for (std::size_t place = 1; place < places.size(); ++place) {
        if (place % 256 == 1) progress(place);
        const tv::Placement& at = places[place];
        const tv::Instance& instance = scene.instances[at.instance];
        const auto outer = static_cast<uint32_t>(tables.nodes.size());
        Node& node = tables.nodes.emplace_back();
        node.name = platform::latin1_to_utf8(instance.name);
        Node inner;
        bool has_inner = false;
        if (tv::is_animated(instance)) {
            const Motion& motion = animator.motion(at.instance);
            place_node(node, motion.start);
            using Path = AnimationChannel::Path;
            animator.add_channel(Path::translation, motion.translation, outer);
            animator.add_channel(Path::rotation, motion.rotation, outer);
            animator.add_channel(Path::scale, motion.scale, outer);
            inner.translation = pivot_of(instance, scale);
            has_inner = inner.translation != std::array<float, 3>{0, 0, 0};
            inner.name = node.name + " pivot";
        } else {
            Decomposition parts = decompose(to_glm(tv::local_matrix(instance, animator.start_time())));
            if (!parts.finite) ++not_finite;
            parts.outer.translation *= scale;
            place_node(node, parts.outer);
            has_inner = parts.sheared;
            Placing turn;
            turn.rotation = parts.inner;
            place_node(inner, turn);
            inner.name = node.name + " shear";
        }
        holder[place] = outer;
        if (has_inner) {
            holder[place] = outer + 1;
            node.children.push_back(outer + 1);
            tables.nodes.push_back(std::move(inner)); // `node` may dangle from here on
        }
        if (at.parent == 0)
            tables.roots.push_back(outer);
        else
            tables.nodes[holder[at.parent]].children.push_back(outer);
        if (instance.object != tv::no_id)
            tables.nodes[holder[place]].mesh = meshes.mesh(instance.object, instance.projection, at.world);
    }
    if (not_finite != 0)
        note(report, Note::Level::warning,
             counted(not_finite, "instance") + " placed by a matrix that isn't finite: put at the origin");
}

} // namespace gltf
