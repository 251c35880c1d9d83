#include "export/gltf/scene/rig.h"

#include "export/gltf/scene/nodes.h"

namespace gltf {

uint32_t add_rig(const Mover& mover, const std::string& name, const RigParts& parts)
{
    using Path = AnimationChannel::Path;
    std::vector<Node>& nodes = parts.tables.nodes;
    const auto outer = static_cast<uint32_t>(nodes.size());
    const Motion motion = parts.stage.motion(mover, parts.scale);
    Node node;
    node.name = name;
    place_node(node, motion.start);
    parts.animator.add_channel(Path::translation, motion.translation, outer);
    parts.animator.add_channel(Path::rotation, motion.rotation, outer);
    const uint32_t holder = mover.parent == tv::no_id ? none : parts.holders[mover.parent];
    if (holder == none)
        parts.tables.roots.push_back(outer);
    else
        nodes[holder].children.push_back(outer);
    nodes.push_back(std::move(node));
    if (mover.pivot == glm::dvec3(0)) return outer;
    Node inner;
    inner.name = name + " pivot";
    Placing placing;
    placing.translation = -mover.pivot * parts.scale;
    place_node(inner, placing);
    nodes[outer].children.push_back(outer + 1);
    nodes.push_back(std::move(inner));
    return outer + 1;
}

} // namespace gltf
