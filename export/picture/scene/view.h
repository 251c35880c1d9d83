// Where a picture is taken from.
#pragma once
#include <glm/mat3x3.hpp>
#include <glm/vec3.hpp>
#include <optional>
#include <span>

#include "export/picture/animation/pose.h"
#include "export/picture/base/request.h"

namespace picture {

struct Viewpoint {
    glm::dvec3 eye{0};  // scene units
    glm::dmat3 axes{1}; // right, up, backwards: unit vectors
    bool perspective = true;
    double half_width = 0, half_height = 0; // of the picture: at distance 1, or in scene units where not perspective
};

// Through the scene's first camera that is placed and of use; nothing where there is none. Where the picture is of
// another shape than the camera's, all that the camera sees is in it.
std::optional<Viewpoint> camera_view(const gltf::Tables& tables, const Pose& pose, double aspect);

// From outside, so that all the points fit. camera and automatic: as three_quarter. Points that aren't numbers don't
// count; without any the view is of the place round the origin.
Viewpoint fitted_view(View view, std::span<const glm::dvec3> points, double aspect);

} // namespace picture
