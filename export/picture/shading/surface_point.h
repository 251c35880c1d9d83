// From what a ray has met to all that the shading asks of the place.
#pragma once
#include "export/picture/scene/stage.h"

namespace picture {

struct SurfacePoint {
    glm::vec3 position{0};
    glm::vec3 lifted{0};          // where rays to lights start: on the smooth surface that the normals mean
    glm::vec3 face{0}, normal{0}; // unit; of the triangle and of the smooth, bumpy surface; on the ray's side
    float leave = 0;              // a new ray starts this far off the triangle, else it would meet it again
    float width = 0;              // of the ray's cone here
    glm::vec3 base{1}, emission{0}, reflectance{0}; // textures and vertex colours multiplied in
    float alpha = 1, strength = 1, metallic = 0, roughness = 1;
    bool unlit = false;
};

SurfacePoint surface_point(const Stage& stage, const Ray& ray, const Hit& hit);

} // namespace picture
