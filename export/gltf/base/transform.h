// Placements: the toolkit's matrices as translation, rotation and scale, the only form that every glTF reader takes.
#pragma once
#include <array>
#include <glm/gtc/quaternion.hpp>
#include <glm/mat4x4.hpp>
#include <glm/vec3.hpp>

namespace gltf {

// p * M of the toolkit (row vectors, translation in row 3, row by row in memory) is M * p of glm and glTF (column
// vectors, column by column): the sixteen numbers are the same, in the same order.
glm::dmat4 to_glm(const std::array<double, 16>& matrix);

struct Placing {
    glm::dvec3 translation{0, 0, 0};
    glm::dquat rotation{1, 0, 0, 0}; // w, x, y, z
    glm::dvec3 scale{1, 1, 1};
};

// A point is scaled, then rotated, then moved.
glm::dmat4 compose(const Placing& placing);

// The turns of Euler order 8: about Z first, then X, then Y; radians.
glm::dquat euler_rotation(double x, double y, double z);

// The angle between two orientations, 0 to pi.
double angle_between(const glm::dquat& a, const glm::dquat& b);

// A matrix as one placing, or as two where it shears: a sheared matrix is a rotation, then scales, then a rotation
// (its singular values), and so two nodes, one in the other, say it exactly. One node with a matrix is no way out:
// glTF demands that such a matrix can be taken apart.
struct Decomposition {
    Placing outer;
    bool sheared = false;
    glm::dquat inner{1, 0, 0, 0}; // sheared: what comes first, a rotation alone
    bool finite = true;           // false: the matrix held what isn't a number, and `outer` is the identity
};
Decomposition decompose(const glm::dmat4& matrix);

// The rotation that lets -Z look along `direction` with +Y as near to `up` as can be. Any lengths; a direction without
// length looks along -Z, and an `up` along the direction is replaced.
glm::dquat look_along(const glm::dvec3& direction, const glm::dvec3& up);

} // namespace gltf
