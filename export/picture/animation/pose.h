// Where every node of the tables stands at a time: the one evaluation of the file's animation.
#pragma once
#include <glm/mat4x4.hpp>
#include <vector>

#include "export/gltf/file/tables.h"
#include "export/picture/animation/sampler.h"

namespace picture {

// What the animation changes, at one moment.
struct Pose {
    std::vector<glm::dmat4> worlds; // by node: from its own space to the scene's
    std::vector<bool> placed;       // by node: it hangs below one of the scene's roots
};

class Animation {
public:
    explicit Animation(const gltf::Tables& tables); // borrows the tables

    Pose pose(double seconds) const;
    bool moves() const { return !channels_.empty(); }

private:
    struct Channel {
        uint32_t node = 0;
        gltf::AnimationChannel::Path path{};
        Keys keys;
    };
    const gltf::Tables& tables_;
    std::vector<Channel> channels_;
};

} // namespace picture
