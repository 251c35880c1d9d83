// Instances -> nodes, one for each place in the tree.
#pragma once
#include <functional>
#include <vector>

#include "export/gltf/animation/animation.h"
#include "export/gltf/animation/stage.h"
#include "export/gltf/base/options.h"
#include "export/gltf/base/report.h"
#include "export/gltf/file/tables.h"
#include "export/gltf/mesh/mesh.h"
#include "lib/toolkit/scene/scene.h"

namespace gltf {

// Instances of objects with children multiply; more places than this are refused.
inline constexpr std::size_t most_places = 1000000;

// Every place that an instance has in the scene, at the animator's start; the first is "world" itself. Throws
// messages::Error where there are more than most_places.
std::vector<tv::Placement> all_places(const tv::Scene& scene, double time, Stage& stage);

// Called now and then with the places done; it throws to stop the work.
using PlaceProgress = std::function<void(std::size_t done)>;

// What nodes are made of, and into.
struct NodeParts {
    const tv::Scene& scene;
    double scale; // of lengths
    Animator& animator;
    Stage& stage;
    MeshMaker& meshes;
    Tables& tables;
    Report& report;
};

// A node for each place but the first, whose children become the scene's roots. A node may hold another one that takes
// its mesh and its children: "NAME pivot" moves the pivot of an animated instance to where the animation turns it,
// and "NAME shear" turns a matrix with shear. "NAME mesh" holds a mesh that isn't there all the time.
// Returns, by instance, the node that takes what hangs below its first place; `none` for one without a place.
std::vector<uint32_t> make_nodes(const NodeParts& parts, const std::vector<tv::Placement>& places,
                                 const PlaceProgress& progress);

// The parts of a placing as the file holds them.
void place_node(Node& node, const Placing& placing);

} // namespace gltf
