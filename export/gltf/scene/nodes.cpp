#include "export/gltf/scene/nodes.h"

#include <cmath>

#include "export/gltf/base/notes.h"
#include "export/gltf/scene/visibility.h"
#include "lib/platform/latin1.h"
#include "lib/toolkit/animation/animation.h"

namespace gltf {

std::vector<tv::Placement> all_places(const tv::Scene& scene, double time, Stage& stage)
{
    std::vector<tv::Placement> places;
    if (!tv::place_all(scene, time, most_places, places)) throw messages::Error(message<"nodes-too-many">(most_places));
    if (!Stage::has_targets(scene)) return places;
    // The toolkit knows of no targets.
    for (std::size_t i = 1; i < places.size(); ++i) {
        tv::Placement& place = places[i];
        const glm::dmat4 parent = to_glm(places[place.parent].world);
        const tv::Instance& instance = scene.instances[place.instance];
        const glm::dmat4 own = instance.target == tv::no_id ? to_glm(tv::local_matrix(instance, time))
                                                            : stage.local(stage.mover(place.instance), time);
        const glm::dmat4 world = parent * own;
        for (int column = 0; column < 4; ++column)
            for (int row = 0; row < 4; ++row)
                place.world[static_cast<std::size_t>(4 * column + row)] = world[column][row];
    }
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

using Path = AnimationChannel::Path;

std::array<float, 3> pivot_of(const tv::Instance& instance, double scale)
{
    if (!instance.axes.origin_enabled) return {0, 0, 0};
    std::array<float, 3> pivot;
    for (std::size_t i = 0; i < 3; ++i)
        pivot[i] = file_float(-scale * static_cast<double>(instance.axes.axes_matrix[3][i])) + 0.0f;
    return pivot;
}

Json extras_of(const tv::Instance& instance)
{
    Json extras;
    if (!instance.stored_path.empty()) extras["storedPath"] = platform::latin1_to_utf8(instance.stored_path);
    if (instance.unseen) extras["unseenByCamera"] = true;
    for (const tv::Extra& extra : instance.extras) extras[extra.name] = extra.values;
    return extras;
}

class NodeMaker {
public:
    NodeMaker(const NodeParts& parts, const std::vector<tv::Placement>& places)
        : parts_(parts), places_(places), visibility_(parts.scene, places, parts.animator),
          holder_(places.size(), none), first_(parts.scene.instances.size(), none)
    {
    }

    void place(std::size_t number)
    {
        const tv::Placement& at = places_[number];
        const tv::Instance& instance = parts_.scene.instances[at.instance];
        const auto outer = static_cast<uint32_t>(parts_.tables.nodes.size());
        Node& node = parts_.tables.nodes.emplace_back();
        node.name = platform::latin1_to_utf8(instance.shown_name.empty() ? instance.name : instance.shown_name);
        node.extras = extras_of(instance);
        std::optional<Node> inner = put(at.instance, node, outer);
        holder_[number] = outer;
        if (inner) {
            holder_[number] = outer + 1;
            node.children.push_back(outer + 1);
            parts_.tables.nodes.push_back(std::move(*inner)); // `node` may dangle from here on
        }
        if (at.parent == 0)
            parts_.tables.roots.push_back(outer);
        else
            parts_.tables.nodes[holder_[at.parent]].children.push_back(outer);
        if (first_[at.instance] == none) first_[at.instance] = holder_[number];
        if (instance.object != tv::no_id) add_mesh(number, instance);
    }

    void finish()
    {
        if (not_finite_ != 0) parts_.report.notes.push_back(message<"instances-not-finite">(not_finite_));
    }

    std::vector<uint32_t> holders() { return std::move(first_); }

private:
    // Places the node; gives what stands inside it, if it takes another one.
    std::optional<Node> put(tv::Id id, Node& node, uint32_t outer)
    {
        const tv::Instance& instance = parts_.scene.instances[id];
        Animator& animator = parts_.animator;
        if (tv::is_animated(instance) || instance.target != tv::no_id) {
            const Motion& motion = instance.target == tv::no_id ? animator.motion(id) : aimed_motion(id);
            place_node(node, motion.start);
            animator.add_channel(Path::translation, motion.translation, outer);
            animator.add_channel(Path::rotation, motion.rotation, outer);
            animator.add_channel(Path::scale, motion.scale, outer);
            Node inner;
            inner.translation = pivot_of(instance, parts_.scale);
            if (inner.translation == std::array<float, 3>{0, 0, 0}) return std::nullopt;
            inner.name = node.name + " pivot";
            return inner;
        }
        Decomposition split = decompose(to_glm(tv::local_matrix(instance, animator.start_time())));
        if (!split.finite) ++not_finite_;
        split.outer.translation *= parts_.scale;
        place_node(node, split.outer);
        if (!split.sheared) return std::nullopt;
        Placing turn;
        turn.rotation = split.inner;
        Node inner;
        place_node(inner, turn);
        inner.name = node.name + " shear";
        return inner;
    }

    // Made once an instance, as Animator::motion is.
    const Motion& aimed_motion(tv::Id id)
    {
        const auto [entry, added] = aimed_.try_emplace(id);
        if (added) entry->second = parts_.stage.motion(parts_.stage.mover(id), parts_.scale);
        return entry->second;
    }

    void add_mesh(std::size_t number, const tv::Instance& instance)
    {
        const Showing showing = visibility_.showing(number);
        if (!showing.drawn) return;
        const uint32_t mesh =
            parts_.meshes.mesh(instance.object, instance.projection, places_[number].world, showing.look);
        if (mesh == none) return;
        uint32_t at = holder_[number];
        if (showing.comes_and_goes) {
            Node own;
            own.name = parts_.tables.nodes[at].name + " mesh";
            const auto child = static_cast<uint32_t>(parts_.tables.nodes.size());
            parts_.tables.nodes[at].children.push_back(child);
            parts_.tables.nodes.push_back(std::move(own));
            visibility_.add_coming_and_going(number, child);
            at = child;
        }
        parts_.tables.nodes[at].mesh = mesh;
        if (!parts_.tables.meshes[mesh].primitives.front().targets.empty())
            visibility_.add_weights(number, at, parts_.tables.nodes[at]);
    }

    const NodeParts& parts_;
    const std::vector<tv::Placement>& places_;
    Visibility visibility_;
    std::vector<uint32_t> holder_; // by place: the node that takes its children
    std::vector<uint32_t> first_;  // by instance
    std::unordered_map<tv::Id, Motion> aimed_;
    std::size_t not_finite_ = 0;
};

} // namespace

std::vector<uint32_t> make_nodes(const NodeParts& parts, const std::vector<tv::Placement>& places,
                                 const PlaceProgress& progress)
{
    NodeMaker maker(parts, places);
    parts.tables.nodes.reserve(parts.tables.nodes.size() + places.size());
    for (std::size_t place = 1; place < places.size(); ++place) {
        if (place % 256 == 1) progress(place);
        maker.place(place);
    }
    maker.finish();
    return maker.holders();
}

} // namespace gltf
