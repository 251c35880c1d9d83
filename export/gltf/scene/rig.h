// Nodes of lights and cameras that have a motion, a parent and a target of their own.
#pragma once
#include <cstdint>
#include <string>
#include <vector>

#include "export/gltf/animation/animation.h"
#include "export/gltf/animation/stage.h"
#include "export/gltf/file/tables.h"
#include "lib/toolkit/scene/scene.h"

namespace gltf {

// What rigs are put into. `holders`: by instance, the node that takes what hangs below it, as make_nodes returns it.
struct RigParts {
    const std::vector<uint32_t>& holders;
    double scale; // of lengths
    Animator& animator;
    Stage& stage;
    Tables& tables;
};

// The node that is to take the light or camera, which look along its -Z; where it turns about a pivot, a second one
// inside the first.
uint32_t add_rig(const Mover& mover, const std::string& name, const RigParts& parts);

} // namespace gltf
