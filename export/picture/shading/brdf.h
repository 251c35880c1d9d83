// glTF's matter: the formulae of glTF 2.0's appendix B, with KHR_materials_specular and _ior.
#pragma once
#include <glm/vec3.hpp>

#include "export/picture/shading/surface_point.h"

namespace picture {

// Light sent toward `to_eye` for each lux that falls in from `to_light` on a surface square to it, times the cosine.
// Both unit vectors. 0 where the light is behind the surface.
glm::vec3 sent_back(const SurfacePoint& point, const glm::vec3& to_light, const glm::vec3& to_eye);

// What a mirror of this matter reflects, `cosine` between eye and normal.
glm::vec3 mirrored(const SurfacePoint& point, float cosine);

// The colour that scattered light gets: metal scatters none.
glm::vec3 scattered(const SurfacePoint& point);

} // namespace picture
