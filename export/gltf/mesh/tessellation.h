// Polygons -> triangles.
#pragma once
#include <array>
#include <cstdint>
#include <glm/vec3.hpp>
#include <memory>
#include <span>
#include <vector>

namespace gltf {

struct Triangles {
    // Corner numbers in the polygon, counter-clockwise seen from where the normal points. Numbers from the polygon's
    // size on are `added` points.
    std::vector<std::array<uint32_t, 3>> list;

    // A point where a polygon's edges cross or touch: a mix of up to four others, each a corner or an earlier added one.
    struct Added {
        std::array<uint32_t, 4> from{};
        std::array<double, 4> weight{}; // 0: not used
    };
    std::vector<Added> added;
};

// Concave, bent and self-crossing polygons too; the winding number tells inside from outside. Keeps its tessellator
// between calls.
class Tessellator {
public:
    Tessellator();
    ~Tessellator();
    Tessellator(const Tessellator&) = delete;
    Tessellator& operator=(const Tessellator&) = delete;

    // `normal` is the polygon's, not zero, of any length; the polygon is seen along it. At least three points, finite.
    // `out` is overwritten. Throws std::bad_alloc.
    enum class Filling : uint8_t {
        empty, // no triangle comes out
        whole, // what is inside is filled, and nothing else
        fan,   // too tangled: triangles round the first corner stand for it, each turned to where the normal points
    };
    Filling polygon(std::span<const glm::dvec3> points, const glm::dvec3& normal, Triangles& out);

private:
    struct State;
    std::unique_ptr<State> state_;
};

} // namespace gltf
