#include "export/gltf/base/transform.h"

#include <algorithm>
#include <cmath>
#include <glm/geometric.hpp>
#include <glm/gtc/type_ptr.hpp>
#include <utility>

namespace gltf {

glm::dmat4 to_glm(const std::array<double, 16>& matrix)
{
    return glm::make_mat4(matrix.data());
}

glm::dmat4 compose(const Placing& placing)
{
    glm::dmat4 matrix = glm::mat4_cast(placing.rotation);
    for (int i = 0; i < 3; ++i) matrix[i] *= placing.scale[i];
    matrix[3] = glm::dvec4(placing.translation, 1);
    return matrix;
}

glm::dquat euler_rotation(double x, double y, double z)
{
    const glm::dquat about_x = glm::angleAxis(x, glm::dvec3(1, 0, 0));
    const glm::dquat about_y = glm::angleAxis(y, glm::dvec3(0, 1, 0));
    const glm::dquat about_z = glm::angleAxis(z, glm::dvec3(0, 0, 1));
    return about_y * about_x * about_z;
}

double angle_between(const glm::dquat& a, const glm::dquat& b)
{
    // By the sine: the cosine can't tell angles below 1e-8.
    const glm::dquat turn = glm::conjugate(a) * b;
    const double sine = std::hypot(turn.x, turn.y, turn.z);
    return 2 * std::atan2(sine, std::abs(turn.w));
}

namespace {

constexpr double right_angle_tolerance = 2e-6; // cosine; what products of 32-bit matrices leave behind

// Any unit vector at a right angle to `v`, which has length 1.
glm::dvec3 perpendicular(const glm::dvec3& v)
{
    const glm::dvec3 other = std::abs(v.x) < 0.6 ? glm::dvec3(1, 0, 0) : glm::dvec3(0, 1, 0);
    return glm::normalize(glm::cross(v, other));
}

// Three axes of length 1 out of columns some of which may be zero: right angles are made exact, missing axes found.
glm::dmat3 complete_axes(const glm::dmat3& columns, const std::array<bool, 3>& present)
{
    glm::dmat3 axes(1);
    const auto count = std::count(present.begin(), present.end(), true);
    if (count == 0) return axes;
    if (count == 1) {
        const int i = present[0] ? 0 : present[1] ? 1 : 2;
        axes[i] = columns[i];
        axes[(i + 1) % 3] = perpendicular(columns[i]);
        axes[(i + 2) % 3] = glm::cross(axes[i], axes[(i + 1) % 3]);
        return axes;
    }
    const int missing = !present[0] ? 0 : !present[1] ? 1 : 2;
    const int i = (missing + 1) % 3, j = (missing + 2) % 3;
    axes[i] = columns[i];
    axes[j] = glm::normalize(columns[j] - glm::dot(columns[j], axes[i]) * axes[i]);
    axes[missing] = glm::cross(axes[i], axes[j]);
    // All three are there: the third keeps its own side, so that a mirroring is seen.
    if (count == 3 && glm::dot(axes[missing], columns[missing]) < 0) axes[missing] = -axes[missing];
    return axes;
}

// Rotation and scale of axes that may be left-handed: then one scale is negative, the one that turns least.
void rotation_and_scale(glm::dmat3 axes, glm::dvec3 scale, Placing& out)
{
    if (glm::determinant(axes) < 0) {
        int best = 0;
        for (int i = 1; i < 3; ++i)
            if (axes[i][i] < axes[best][best]) best = i;
        axes[best] = -axes[best];
        scale[best] = -scale[best];
    }
    out.rotation = glm::normalize(glm::quat_cast(axes));
    out.scale = scale;
}

// Eigenvectors of a symmetric matrix, as columns of a rotation. Jacobi's method: G. Golub and C. Van Loan, Matrix
// Computations, chapter 8.
glm::dmat3 eigenvectors(glm::dmat3 a)
{
    glm::dmat3 vectors(1);
    for (int sweep = 0; sweep < 32; ++sweep) {
        for (const auto& [p, q] : {std::pair(0, 1), std::pair(0, 2), std::pair(1, 2)}) {
            if (a[p][q] == 0) continue;
            const double theta = (a[q][q] - a[p][p]) / (2 * a[p][q]);
            const double t = (theta < 0 ? -1 : 1) / (std::abs(theta) + std::hypot(theta, 1.0));
            const double c = 1 / std::hypot(t, 1.0), s = t * c;
            glm::dmat3 turn(1);
            turn[p][p] = turn[q][q] = c;
            turn[q][p] = s;
            turn[p][q] = -s;
            a = glm::transpose(turn) * a * turn;
            vectors = vectors * turn;
        }
    }
    return vectors;
}

Decomposition decompose_sheared(const glm::dmat3& linear, double size)
{
    Decomposition result;
    result.sheared = true;
    const glm::dmat3 scaled = linear * (1 / size);
    const glm::dmat3 right = eigenvectors(glm::transpose(scaled) * scaled);
    glm::dmat3 left = scaled * right;
    glm::dvec3 values;
    std::array<bool, 3> present{};
    for (int i = 0; i < 3; ++i) {
        values[i] = glm::length(left[i]);
        present[static_cast<std::size_t>(i)] = values[i] > 1e-12;
        if (values[i] > 1e-12)
            left[i] /= values[i];
        else
            values[i] = 0;
    }
    rotation_and_scale(complete_axes(left, present), values * size, result.outer);
    result.inner = glm::normalize(glm::quat_cast(glm::transpose(right)));
    return result;
}

} // namespace

Decomposition decompose(const glm::dmat4& matrix)
{
    Decomposition result;
    double size = 0;
    for (int i = 0; i < 4; ++i)
        for (int j = 0; j < 3; ++j) {
            if (!std::isfinite(matrix[i][j])) {
                result.finite = false;
                return result;
            }
            if (i < 3) size = std::max(size, std::abs(matrix[i][j]));
        }
    const glm::dmat3 linear(matrix);
    glm::dmat3 axes(1);
    glm::dvec3 scale(0, 0, 0);
    std::array<bool, 3> present{};
    for (int i = 0; i < 3; ++i) {
        scale[i] = glm::length(linear[i]);
        present[static_cast<std::size_t>(i)] = scale[i] > 0;
        if (scale[i] > 0) axes[i] = linear[i] / scale[i];
    }
    bool sheared = false;
    for (const auto& [i, j] : {std::pair<std::size_t, std::size_t>(0, 1), {0, 2}, {1, 2}})
        if (present[i] && present[j])
            sheared |= std::abs(glm::dot(axes[static_cast<int>(i)], axes[static_cast<int>(j)])) > right_angle_tolerance;
    if (sheared)
        result = decompose_sheared(linear, size);
    else
        rotation_and_scale(complete_axes(axes, present), scale, result.outer);
    result.outer.translation = glm::dvec3(matrix[3]);
    return result;
}

glm::dquat look_along(const glm::dvec3& direction, const glm::dvec3& up)
{
    const double length = glm::length(direction);
    if (!(length > 0) || !std::isfinite(length)) return {1, 0, 0, 0};
    const glm::dvec3 back = -direction / length;
    glm::dvec3 right = glm::cross(up, back);
    const double sine = glm::length(right);
    const double up_length = glm::length(up);
    if (!(sine > 1e-9 * up_length) || !std::isfinite(sine))
        // Straight up or down: the turn from -Z that a pitch alone would make.
        right = std::abs(back.x) < 1e-6 ? glm::dvec3(1, 0, 0) : perpendicular(back);
    right = glm::normalize(right - glm::dot(right, back) * back);
    return glm::normalize(glm::quat_cast(glm::dmat3(right, glm::cross(back, right), back)));
}

} // namespace gltf
