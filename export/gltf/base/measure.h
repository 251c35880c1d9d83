// How large the scene is and where its things stand, in the scene's own units.
#pragma once
#include <glm/vec3.hpp>
#include <vector>

#include "lib/toolkit/scene/scene.h"

namespace gltf {

struct Measure {
    std::vector<glm::dvec3> centers, sizes; // of every placed object's box: its middle, and half its extent each way
    glm::dvec3 lower{0, 0, 0}, upper{0, 0, 0};
    bool empty = true;

    glm::dvec3 center() const { return (lower + upper) * 0.5; }
};

Measure measure(const tv::Scene& scene, const std::vector<tv::Placement>& places);

// The median of the distances from a point to the placed objects: what "about as far as the scene" means for a lamp,
// also where one thing lies a thousand times farther away than all others. `otherwise` where nothing is placed.
double usual_distance(const Measure& measure, const glm::dvec3& from, double otherwise);

// From a point to the middle of the bounds of the placed objects whose own middle lies within `range` of it;
// `otherwise` where there are none.
double middle_distance(const Measure& measure, const glm::dvec3& from, double range, double otherwise);

} // namespace gltf
