// Texture coordinates from an instance's projection frame, corner by corner.
//
// How a picture lies, told for an upright frame (V up) that is seen from where its U and V look like the page's:
//   orthographic  U is the picture's lower edge, V its left edge, O the corner between them.
//   cylindrical   O is the foot of the axis, V the axis and the picture's height. U points to the seam. The picture
//                 goes once round, reads the right way round from outside, and has its middle opposite the seam.
//   spherical     the same round the axis V; its height spans the angle from the pole at -V to the pole at +V. Only
//                 the directions of U and V count.
//   box           six pictures, one for each side of the box at O; a face takes the side that it looks to most, and each
//                 reads the right way round from outside. Top and bottom have U to the right.
#pragma once
#include <array>
#include <glm/vec3.hpp>
#include <span>

#include "lib/toolkit/scene/scene.h"

namespace gltf {

struct Uv {
    float u = 0, v = 0; // glTF's: v runs down the picture. Not limited to 0..1: seams are solved by going beyond
};

// A frame made ready for use. Points given to it are in the frame's own space: the primitive's, or the world's.
struct UvProjector {
    tv::ProjectionModel model = tv::ProjectionModel::orthographic;
    glm::dvec3 origin{0};
    // Dot with (p - origin). Orthographic and box: the coordinate along that side of the frame. Cylindrical and
    // spherical: u towards the seam, w a quarter turn to the right of it (from outside), both in lengths; v the height,
    // for cylindrical in parts of the picture.
    glm::dvec3 u{0}, v{0}, w{0};
    std::array<glm::dvec3, 3> sides{}; // box: unit vectors along U, V and W, which a normal is held against
    double blur = 0;     // what rounding of the points may be off, lengths: nearer to the axis there is no direction
    bool usable = false; // false: a frame without extent, or not finite
};

// usable is false where the frame has no area or holds what isn't finite; project_triangle then gives (0, 0).
UvProjector make_projector(const tv::TextureProjection& frame);

// Texture coordinates of one triangle's corners. `normal` chooses the side for cubic maps, and need not have length 1.
// The corners of a triangle that crosses a cylinder's or sphere's seam come out on one side of it, and a corner on the
// pole or the axis takes the middle of the other two, so that neither smears. Never NaN, never beyond 1e6.
void project_triangle(const UvProjector& projector, const std::array<glm::dvec3, 3>& points, const glm::dvec3& normal,
                      std::span<Uv, 3> out);

} // namespace gltf
