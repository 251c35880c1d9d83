#include "export/picture/animation/pose.h"

#include <array>
#include <glm/gtc/quaternion.hpp>

namespace picture {

namespace {

using Path = gltf::AnimationChannel::Path;

struct Placing {
    std::array<double, 3> translation{}, scale{};
    std::array<double, 4> rotation{}; // x, y, z, w
};

glm::dmat4 matrix_of(const Placing& placing)
{
    const auto& [x, y, z, w] = placing.rotation;
    glm::dmat4 matrix = glm::mat4_cast(glm::dquat(w, x, y, z));
    for (int i = 0; i < 3; ++i) matrix[i] *= placing.scale[static_cast<std::size_t>(i)];
    matrix[3] = {placing.translation[0], placing.translation[1], placing.translation[2], 1};
    return matrix;
}

} // namespace

Animation::Animation(const gltf::Tables& tables) : tables_(tables)
{
    for (const gltf::AnimationChannel& channel : tables.animation.channels) {
        if (channel.path == Path::weights || channel.path == Path::pointer) continue; // move no node
        if (channel.node >= tables.nodes.size() || channel.sampler >= tables.animation.samplers.size()) continue;
        const Keys keys = keys_of(tables, tables.animation.samplers[channel.sampler]);
        if (!keys.times.empty() && keys.width == (channel.path == Path::rotation ? 4 : 3))
            channels_.push_back({channel.node, channel.path, keys});
    }
}

Pose Animation::pose(double seconds) const
{
    const std::vector<gltf::Node>& nodes = tables_.nodes;
    std::vector<Placing> placings(nodes.size());
    for (std::size_t i = 0; i < nodes.size(); ++i) {
        for (std::size_t k = 0; k < 3; ++k) {
            placings[i].translation[k] = nodes[i].translation[k];
            placings[i].scale[k] = nodes[i].scale[k];
        }
        for (std::size_t k = 0; k < 4; ++k) placings[i].rotation[k] = nodes[i].rotation[k];
    }
    for (const Channel& channel : channels_) {
        Placing& placing = placings[channel.node];
        switch (channel.path) {
        case Path::translation: value_at(channel.keys, seconds, false, placing.translation); break;
        case Path::rotation: value_at(channel.keys, seconds, true, placing.rotation); break;
        case Path::scale: value_at(channel.keys, seconds, false, placing.scale); break;
        case Path::weights:
        case Path::pointer: break;
        }
    }

    Pose pose;
    pose.worlds.assign(nodes.size(), glm::dmat4(1));
    pose.placed.assign(nodes.size(), false);
    // Depth first, without recursion: a chain of parents may be as long as the file is.
    std::vector<uint32_t> open;
    const auto place = [&](uint32_t node, const glm::dmat4& parent) {
        if (node >= nodes.size() || pose.placed[node]) return;
        pose.placed[node] = true;
        pose.worlds[node] = parent * matrix_of(placings[node]);
        open.push_back(node);
    };
    for (const uint32_t root : tables_.roots) place(root, glm::dmat4(1));
    while (!open.empty()) {
        const uint32_t node = open.back();
        open.pop_back();
        for (const uint32_t child : nodes[node].children) place(child, pose.worlds[node]);
    }
    return pose;
}

} // namespace picture
