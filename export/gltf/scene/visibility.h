// What of an instance's mesh is to be seen, and when: dissolves, what the camera doesn't see, and morphs. Pieces of an
// object that was split follow the instance that they are pieces of.
#pragma once
#include <cstddef>
#include <unordered_map>
#include <vector>

#include "export/gltf/animation/animation.h"
#include "export/gltf/file/tables.h"
#include "export/gltf/material/material.h"
#include "export/gltf/mesh/mesh.h"
#include "lib/toolkit/scene/scene.h"

namespace gltf {

struct Showing {
    bool drawn = true;
    bool comes_and_goes = false; // there are times at which it is wholly dissolved
    MeshLook look;
};

class Visibility {
public:
    Visibility(const tv::Scene& scene, const std::vector<tv::Placement>& places, Animator& animator);

    Showing showing(std::size_t place);
    void add_coming_and_going(std::size_t place, uint32_t node); // scale 0 while it isn't there
    void add_weights(std::size_t place, uint32_t node_number, Node& node);

private:
    const tv::Instance* effect(std::size_t place) const
    {
        return effects_[place] == tv::no_id ? nullptr : &scene_.instances[effects_[place]];
    }
    const Track& dissolve(tv::Id instance);

    const tv::Scene& scene_;
    Animator& animator_;
    std::vector<tv::Id> effects_; // by place: the instance whose dissolve, morph and so on it shows; no_id: none
    std::unordered_map<tv::Id, Track> dissolves_;
    std::unordered_map<tv::Id, uint32_t> steps_, weights_; // samplers that places of an instance share
};

// Behind all nodes: the opacity of materials that follow a dissolve.
void animate_fading(const tv::Scene& scene, const std::vector<MaterialMaker::Fader>& faders, Animator& animator,
                    const Tables& tables);

} // namespace gltf
