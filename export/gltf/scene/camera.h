// Cameras -> camera nodes, with their look-at paths as movement and rotation.
#pragma once
#include "export/gltf/animation/animation.h"
#include "export/gltf/base/options.h"
#include "export/gltf/file/tables.h"
#include "export/gltf/scene/rig.h"
#include "lib/toolkit/scene/scene.h"

namespace gltf {

// The active camera comes first.
void make_cameras(const tv::Scene& scene, const Options& options, const RigParts& parts);

// The orientation of a camera on its path: looking from one point to the other, turned about that line by the roll.
// Asked at rising times, so that a path over the zenith doesn't turn the camera round.
class LookPath {
public:
    LookPath(const tv::Camera& camera, Animator& animator);
    glm::dquat orientation(double time);
    bool moves() const { return moves_; } // there are keys

    std::array<Track, 3> from, at;
    Track roll; // degrees

private:
    double turn_ = 0; // radians: what the static up vector has beyond the first roll
    glm::dquat still_{1, 0, 0, 0};
    bool moves_ = false, started_ = false, upside_down_ = false;
    glm::dvec3 direction_{0, 0, -1}, right_{1, 0, 0};
};

} // namespace gltf
