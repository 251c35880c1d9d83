// The toolkit's procedural textures, computed point by point: "checker", "grid" and "rawturbulence".
#pragma once
#include <cstdint>
#include <glm/vec3.hpp>
#include <optional>

#include "lib/toolkit/scene/scene.h"

namespace gltf {

struct Procedural {
    enum class Kind : uint8_t { checker, grid, turbulence } kind = Kind::checker;
    glm::dvec3 color1{1, 1, 1}, color2{0, 0, 0};
    double param1 = 1, param2 = 1;
    glm::dvec3 scale{1, 1, 1}, translate{0, 0, 0}; // the layer's own space: (p - translate) / scale
};

// Nothing for "off" and for names that aren't known.
std::optional<Procedural> make_procedural(const tv::Texture& texture, const tv::Layer& layer);

// checker: cubes of side 1 in the layer's space, color1 where the sum of the three whole parts is even.
// grid: lines of color2 on color1 along the planes with whole coordinates, param1 being half a line's width.
//   Axes along which the surface doesn't reach through the space (`across` false) have no lines, or a flat surface that
//   lies in one of the planes would be all line.
// rawturbulence: from color2 to color1 by noise of five octaves, each param2 times the one before; param1 is contrast.
glm::dvec3 procedural_color(const Procedural& procedural, const glm::dvec3& point, const glm::bvec3& across);

// The point of the frame's space that texture coordinates 0..1 stand for (v up): on the plane through O, on the
// cylinder or the sphere, or on the box's side at the end of W.
class FrameSurface {
public:
    explicit FrameSurface(const tv::TextureProjection& frame);
    glm::dvec3 point(double u, double v) const;

private:
    tv::ProjectionModel model_;
    glm::dvec3 origin_, u_, v_, w_;
};

} // namespace gltf
