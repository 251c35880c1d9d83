#include "export/gltf/material/projection_uv.h"

#include <algorithm>
#include <cmath>
#include <glm/common.hpp>
#include <utility>

#include "export/gltf/base/vectors.h"
#include "lib/toolkit/units.h"

namespace gltf {
namespace {

using Triangle = std::array<glm::dvec3, 3>;

constexpr double furthest = 1e6; // of a coordinate; beyond it a float has no fraction left worth having

// Do a and b span an area? Relative, so that frames of any size are judged alike.
bool span_area(const glm::dvec3& a, const glm::dvec3& b)
{
    return glm::length(glm::cross(direction_of(a), direction_of(b))) > 1e-6;
}

Uv limited(double u, double v)
{
    return {static_cast<float>(std::clamp(u, -furthest, furthest)),
            static_cast<float>(std::clamp(v, -furthest, furthest))};
}

void prepare_plane(UvProjector& projector, const glm::dvec3& u, const glm::dvec3& v)
{
    if (!span_area(u, v)) return;
    // Dual vectors, so that a frame whose sides aren't at right angles is laid as it stands.
    const glm::dvec3 normal = direction_of(glm::cross(u, v));
    const glm::dvec3 across_u = glm::cross(v, normal), across_v = glm::cross(normal, u);
    projector.u = across_u * (1 / glm::dot(u, across_u));
    projector.v = across_v * (1 / glm::dot(v, across_v));
    projector.usable = is_finite(projector.u) && is_finite(projector.v);
}

void prepare_round(UvProjector& projector, const glm::dvec3& u, const glm::dvec3& v)
{
    if (!span_area(u, v)) return;
    const glm::dvec3 axis = direction_of(v);
    projector.w = direction_of(glm::cross(axis, u));
    projector.u = glm::cross(projector.w, axis);
    projector.v = projector.model == tv::ProjectionModel::cylindrical ? axis * (1 / glm::length(v)) : axis;
    projector.usable = is_finite(projector.v);
}

// A box may be flat in one of its directions: the sides that need it take coordinate 0 there.
void prepare_box(UvProjector& projector, const glm::dvec3& u, const glm::dvec3& v, const glm::dvec3& w)
{
    std::array<glm::dvec3, 3> sides = {direction_of(u), direction_of(v), direction_of(w)};
    const std::array<double, 3> sizes = {glm::length(u), glm::length(v), glm::length(w)};
    const auto flat = std::count(sizes.begin(), sizes.end(), 0.0);
    if (flat > 1) return;
    for (std::size_t i = 0; i < 3; i++)
        if (!(sizes[i] > 0)) sides[i] = direction_of(glm::cross(sides[(i + 1) % 3], sides[(i + 2) % 3]));
    // An equal share of each direction is needed for a side to be found; what is left leans too far to be a box.
    if (!(std::abs(glm::dot(sides[0], glm::cross(sides[1], sides[2]))) > 1e-6)) return;
    projector.sides = sides;
    const std::array<glm::dvec3*, 3> duals = {&projector.u, &projector.v, &projector.w};
    for (std::size_t i = 0; i < 3; i++) {
        const glm::dvec3 across = glm::cross(sides[(i + 1) % 3], sides[(i + 2) % 3]);
        *duals[i] = sizes[i] > 0 ? across * (1 / (glm::dot(sides[i], across) * sizes[i])) : glm::dvec3(0);
        if (!is_finite(*duals[i])) return;
    }
    projector.usable = true;
}

void project_plane(const UvProjector& projector, const Triangle& offsets, std::span<Uv, 3> out)
{
    for (std::size_t i = 0; i < 3; i++)
        out[i] = limited(glm::dot(offsets[i], projector.u), 1 - glm::dot(offsets[i], projector.v));
}

void project_box(const UvProjector& projector, const Triangle& offsets, const glm::dvec3& normal, std::span<Uv, 3> out)
{
    // W first, and the others only when clearly ahead: faces at 45 degrees mustn't change sides by rounding.
    const double along_u = glm::dot(normal, projector.sides[0]), along_v = glm::dot(normal, projector.sides[1]);
    const double along_w = glm::dot(normal, projector.sides[2]);
    constexpr double ahead = 1 + 1e-5;
    enum { u_side, v_side, w_side } side = w_side;
    double most = std::abs(along_w);
    if (std::abs(along_u) > most * ahead) {
        side = u_side;
        most = std::abs(along_u);
    }
    if (std::abs(along_v) > most * ahead) side = v_side;

    for (std::size_t i = 0; i < 3; i++) {
        const double a = glm::dot(offsets[i], projector.u), b = glm::dot(offsets[i], projector.v);
        const double c = glm::dot(offsets[i], projector.w);
        switch (side) {
        case w_side: out[i] = limited(along_w < 0 ? 1 - a : a, 1 - b); break;
        case u_side: out[i] = limited(along_u < 0 ? c : 1 - c, 1 - b); break;
        case v_side: out[i] = limited(a, along_v < 0 ? 1 - c : c); break;
        }
    }
}

// Shifts values of a circle of length 1 by whole turns so that they lie as near together as they can, the first of
// them within 0..1. They are left alone when they already lie within half a turn.
void gather(std::array<double, 3>& turns, const std::array<std::size_t, 3>& which, std::size_t count)
{
    if (count < 2) return;
    std::array<std::size_t, 3> order = which;
    for (std::size_t i = 1; i < count; i++)
        for (std::size_t k = i; k > 0 && turns[order[k]] < turns[order[k - 1]]; k--) std::swap(order[k], order[k - 1]);
    if (turns[order[count - 1]] - turns[order[0]] <= 0.5 + 1e-9) return;
    // The widest gap on the circle stays outside; what lies before it goes one turn further.
    std::size_t before = 0;
    double widest = 0;
    for (std::size_t i = 0; i + 1 < count; i++) {
        const double gap = turns[order[i + 1]] - turns[order[i]];
        if (gap > widest) {
            widest = gap;
            before = i + 1;
        }
    }
    if (turns[order[0]] + 1 - turns[order[count - 1]] >= widest) return;
    for (std::size_t i = 0; i < before; i++) turns[order[i]] += 1;
}

void project_round(const UvProjector& projector, const Triangle& offsets, std::span<Uv, 3> out)
{
    const bool sphere = projector.model == tv::ProjectionModel::spherical;
    std::array<double, 3> turns{}, heights{};
    std::array<std::size_t, 3> sure{}; // the corners that have a direction, seen from the axis
    std::size_t sure_count = 0;
    for (std::size_t i = 0; i < 3; i++) {
        const glm::dvec3& p = offsets[i];
        const double x = glm::dot(p, projector.u), y = glm::dot(p, projector.w), z = glm::dot(p, projector.v);
        const double squared = x * x + y * y;
        const double nearest = 1e-6 * glm::length(p) + projector.blur;
        if (squared > nearest * nearest) {
            const double turn = std::atan2(y, x) * (0.5 / tv::pi);
            turns[i] = turn < 0 ? turn + 1 : turn;
            sure[sure_count++] = i;
        }
        heights[i] = sphere ? 0.5 + std::atan2(z, std::sqrt(squared)) / tv::pi : z;
    }
    gather(turns, sure, sure_count);
    double middle = 0.5;
    if (sure_count == 1) middle = turns[sure[0]];
    if (sure_count == 2) middle = (turns[sure[0]] + turns[sure[1]]) / 2;
    std::array<bool, 3> known{};
    for (std::size_t i = 0; i < sure_count; i++) known[sure[i]] = true;
    for (std::size_t i = 0; i < 3; i++) out[i] = limited(known[i] ? turns[i] : middle, 1 - heights[i]);
}

} // namespace

UvProjector make_projector(const tv::TextureProjection& frame)
{
    UvProjector projector;
    projector.model = frame.model;
    projector.origin = vector_of(frame.origin);
    const glm::dvec3 u = vector_of(frame.upoint) - projector.origin;
    const glm::dvec3 v = vector_of(frame.vpoint) - projector.origin;
    const glm::dvec3 w = vector_of(frame.wpoint) - projector.origin;
    const bool box = frame.model == tv::ProjectionModel::box; // the others' wpoint has no meaning
    if (!is_finite(projector.origin) || !is_finite(u) || !is_finite(v) || (box && !is_finite(w))) return projector;
    const glm::dvec3 away = glm::abs(projector.origin);
    projector.blur = std::max({away.x, away.y, away.z}) * 2.4e-7;

    switch (frame.model) {
    case tv::ProjectionModel::orthographic: prepare_plane(projector, u, v); break;
    case tv::ProjectionModel::cylindrical:
    case tv::ProjectionModel::spherical: prepare_round(projector, u, v); break;
    case tv::ProjectionModel::box: prepare_box(projector, u, v, w); break;
    }
    return projector;
}

void project_triangle(const UvProjector& projector, const std::array<glm::dvec3, 3>& points, const glm::dvec3& normal,
                      std::span<Uv, 3> out)
{
    Triangle offsets;
    double sum = 0; // not finite as soon as one of the nine isn't
    for (std::size_t i = 0; i < 3; i++) {
        offsets[i] = points[i] - projector.origin;
        const glm::dvec3 away = glm::abs(offsets[i]);
        sum += away.x + away.y + away.z;
    }
    // Beyond this a square overflows. Nothing that is seen lies there.
    if (!projector.usable || !(sum < 1e100)) {
        std::fill(out.begin(), out.end(), Uv{});
        return;
    }
    switch (projector.model) {
    case tv::ProjectionModel::orthographic: project_plane(projector, offsets, out); break;
    case tv::ProjectionModel::cylindrical:
    case tv::ProjectionModel::spherical: project_round(projector, offsets, out); break;
    case tv::ProjectionModel::box: project_box(projector, offsets, normal, out); break;
    }
}

} // namespace gltf
