// Where instances stand in the world at any time, their targets minded: what a light, a camera or another instance that
// hangs below one of them or looks at it has to know.
#pragma once
#include <array>
#include <cstddef>
#include <glm/gtc/quaternion.hpp>
#include <glm/mat4x4.hpp>
#include <glm/vec3.hpp>
#include <optional>
#include <unordered_map>
#include <vector>

#include "export/gltf/animation/animation.h"
#include "export/gltf/animation/channel_track.h"
#include "export/gltf/base/transform.h"
#include "lib/toolkit/scene/scene.h"

namespace gltf {

// The tracks of what is placed by position, scale and Euler angles, with what it hangs under and looks at.
struct Mover {
    std::array<Track, 3> position, scale, angles;
    glm::dvec3 pivot{0, 0, 0};
    tv::Id parent = tv::no_id; // instance; no_id: the world
    tv::Id target = tv::no_id; // instance; no_id: it goes by its own angles
    bool fixed = false;        // placed by `matrix` alone
    glm::dmat4 matrix{1};
};

class Stage {
public:
    Stage(const tv::Scene& scene, Animator& animator) : scene_(scene), animator_(animator) {}

    // True when any instance of the scene has a target, so that places can't be had from the toolkit.
    static bool has_targets(const tv::Scene& scene);

    Mover mover(const tv::Rig& rig);
    const Mover& mover(tv::Id instance); // good while the stage lives

    // Its placing below its parent, without the pivot: ((p - pivot) * scale) turned, then moved. Lengths are the scene's.
    Placing placing(const Mover& mover, double time);
    glm::dmat4 local(const Mover& mover, double time); // the same with the pivot, as a matrix
    glm::dmat4 world(tv::Id instance, double time);
    // The place that its pivot takes, and what turns a vector into the world.
    glm::dvec3 place(const Mover& mover, double time);
    glm::dmat4 world(const Mover& mover, double time);

    // Start and samplers of what moves it below its parent; lengths times `scale`.
    Motion motion(const Mover& mover, double scale);

    // All tracks that its rotation depends on: its own, and with a target those of both chains of parents.
    std::vector<Track> rotation_tracks(const Mover& mover);

private:
    glm::dquat aim(const Mover& mover, double time);
    tv::Id parent_of(tv::Id instance);
    void add_chain(tv::Id instance, bool with_rotation, std::vector<Track>& out, std::vector<tv::Id>& seen);

    const tv::Scene& scene_;
    Animator& animator_;
    std::unordered_map<tv::Id, Mover> movers_;
    std::optional<std::vector<tv::Id>> holders_; // of each object: its first living instance
    double time_ = 0;                            // of worlds_
    int depth_ = 0;                              // of targets whose place depends on targets
    std::unordered_map<tv::Id, glm::dmat4> worlds_;
};

} // namespace gltf
