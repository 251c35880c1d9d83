// Texture coordinates from an instance's projection frame, corner by corner.
#pragma once
#include <array>
#include <span>

#include "lib/toolkit/scene.h"

namespace gltf {

struct Uv {
    float u = 0, v = 0; // glTF's: v runs down the picture. Not limited to 0..1: seams are solved by going beyond
};

// A frame made ready for use. Points given to it are in the frame's own space: the primitive's, or the world's.
struct UvProjector {
    tv::ProjectionModel model = tv::ProjectionModel::orthographic;
    std::array<double, 3> origin{}, u{}, v{}, w{}; // dual vectors: dot with (p - origin) gives the coordinate
    double u_scale = 1, v_scale = 1;
    bool usable = false; // false: a frame without extent, or not finite
};

// usable is false where the frame has no area or holds what isn't finite; project_triangle then gives (0, 0).
UvProjector make_projector(const tv::TextureProjection& frame);

// Texture coordinates of one triangle's corners. `normal` chooses the side for cubic maps, and need not have length 1.
// The corners of a triangle that crosses a cylinder's or sphere's seam come out on one side of it, and a corner on the
// pole or the axis takes the middle of the other two, so that neither smears. Never NaN, never beyond 1e6.
void project_triangle(const UvProjector& projector, const std::array<std::array<double, 3>, 3>& points,
                      const std::array<double, 3>& normal, std::span<Uv, 3> out);

} // namespace gltf
