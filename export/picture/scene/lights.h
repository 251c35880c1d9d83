// The lights of one moment (KHR_lights_punctual), and what of them reaches a point.
#pragma once
#include <glm/vec3.hpp>
#include <vector>

#include "export/picture/animation/pose.h"

namespace picture {

struct LightSource {
    gltf::Light::Type type{};
    glm::vec3 position{0};                 // seen from the eye, scene units
    glm::vec3 direction{0, 0, -1};         // where it shines; a point light has none
    glm::vec3 strength{0};                 // colour times lux, or candela
    float range = 0;                       // where it ends; 0: nowhere
    float cone_scale = 0, cone_offset = 1; // of the cosine off the axis; spots
};

// What comes from a light, before anything stands in between.
struct Incidence {
    glm::vec3 toward{0}; // unit
    float distance = 0;  // to the light; directional: infinite
    glm::vec3 lux{0};    // on a surface that faces it; 0: the light doesn't reach the point
};

Incidence incidence(const LightSource& light, const glm::vec3& point);

// Lights that don't shine are left out.
std::vector<LightSource> make_lights(const gltf::Tables& tables, const Pose& pose, const glm::dvec3& eye);

} // namespace picture
