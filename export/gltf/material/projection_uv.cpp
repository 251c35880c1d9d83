#include "export/gltf/material/projection_uv.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <utility>

namespace gltf {
namespace {

using Vector = std::array<double, 3>;
using Triangle = std::array<Vector, 3>;

constexpr double furthest = 1e6; // of a coordinate; beyond it a float has no fraction left worth having

Vector difference(const Vector& a, const Vector& b)
{
    return {a[0] - b[0], a[1] - b[1], a[2] - b[2]};
}

double dot(const Vector& a, const Vector& b)
{
    return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}

Vector cross(const Vector& a, const Vector& b)
{
    return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}

Vector scaled(const Vector& a, double factor)
{
    return {a[0] * factor, a[1] * factor, a[2] * factor};
}

double length(const Vector& a)
{
    return std::sqrt(dot(a, a));
}

// Length 1, or zero where there is no direction.
Vector direction(const Vector& a)
{
    const double size = length(a);
    return size > 0 ? scaled(a, 1 / size) : Vector{};
}

Vector widened(const tv::Vec3& a)
{
    return {a[0], a[1], a[2]};
}

bool finite(const Vector& a)
{
    return std::isfinite(a[0]) && std::isfinite(a[1]) && std::isfinite(a[2]);
}

// Do a and b span an area? Relative, so that frames of any size are judged alike.
bool span_area(const Vector& a, const Vector& b)
{
    return length(cross(direction(a), direction(b))) > 1e-6;
}

Uv limited(double u, double v)
{
    return {static_cast<float>(std::clamp(u, -furthest, furthest)),
            static_cast<float>(std::clamp(v, -furthest, furthest))};
}

void prepare_plane(UvProjector& projector, const Vector& u, const Vector& v)
{
    if (!span_area(u, v)) return;
    // Dual vectors, so that a frame whose sides aren't at right angles is laid as it stands.
    const Vector normal = direction(cross(u, v));
    const Vector across_u = cross(v, normal), across_v = cross(normal, u);
    projector.u = scaled(across_u, 1 / dot(u, across_u));
    projector.v = scaled(across_v, 1 / dot(v, across_v));
    projector.usable = finite(projector.u) && finite(projector.v);
}

void prepare_round(UvProjector& projector, const Vector& u, const Vector& v)
{
    if (!span_area(u, v)) return;
    const Vector axis = direction(v);
    projector.w = direction(cross(axis, u));
    projector.u = cross(projector.w, axis);
    projector.v = projector.model == tv::ProjectionModel::cylindrical ? scaled(axis, 1 / length(v)) : axis;
    projector.usable = finite(projector.v);
}

// A box may be flat in one of its directions: the sides that need it take coordinate 0 there.
void prepare_box(UvProjector& projector, const Vector& u, const Vector& v, const Vector& w)
{
    std::array<Vector, 3> sides = {direction(u), direction(v), direction(w)};
    const std::array<double, 3> sizes = {length(u), length(v), length(w)};
    const auto flat = std::count(sizes.begin(), sizes.end(), 0.0);
    if (flat > 1) return;
    for (std::size_t i = 0; i < 3; i++)
        if (!(sizes[i] > 0)) sides[i] = direction(cross(sides[(i + 1) % 3], sides[(i + 2) % 3]));
    // An equal share of each direction is needed for a side to be found; what is left leans too far to be a box.
    if (!(std::abs(dot(sides[0], cross(sides[1], sides[2]))) > 1e-6)) return;
    projector.sides = sides;
    const std::array<Vector*, 3> duals = {&projector.u, &projector.v, &projector.w};
    for (std::size_t i = 0; i < 3; i++) {
        const Vector across = cross(sides[(i + 1) % 3], sides[(i + 2) % 3]);
        *duals[i] = sizes[i] > 0 ? scaled(across, 1 / (dot(sides[i], across) * sizes[i])) : Vector{};
        if (!finite(*duals[i])) return;
    }
    projector.usable = true;
}

void project_plane(const UvProjector& projector, const Triangle& offsets, std::span<Uv, 3> out)
{
    for (std::size_t i = 0; i < 3; i++)
        out[i] = limited(dot(offsets[i], projector.u), 1 - dot(offsets[i], projector.v));
}

void project_box(const UvProjector& projector, const Triangle& offsets, const Vector& normal, std::span<Uv, 3> out)
{
    // W first, and the others only when clearly ahead: faces at 45 degrees mustn't change sides by rounding.
    const double along_u = dot(normal, projector.sides[0]), along_v = dot(normal, projector.sides[1]);
    const double along_w = dot(normal, projector.sides[2]);
    constexpr double ahead = 1 + 1e-5;
    enum { u_side, v_side, w_side } side = w_side;
    double most = std::abs(along_w);
    if (std::abs(along_u) > most * ahead) {
        side = u_side;
        most = std::abs(along_u);
    }
    if (std::abs(along_v) > most * ahead) side = v_side;

    for (std::size_t i = 0; i < 3; i++) {
        const double a = dot(offsets[i], projector.u), b = dot(offsets[i], projector.v);
        const double c = dot(offsets[i], projector.w);
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
    constexpr double pi = std::numbers::pi;
    const bool sphere = projector.model == tv::ProjectionModel::spherical;
    std::array<double, 3> turns{}, heights{};
    std::array<std::size_t, 3> sure{}; // the corners that have a direction, seen from the axis
    std::size_t sure_count = 0;
    for (std::size_t i = 0; i < 3; i++) {
        const Vector& p = offsets[i];
        const double x = dot(p, projector.u), y = dot(p, projector.w), z = dot(p, projector.v);
        const double squared = x * x + y * y;
        const double nearest = 1e-6 * length(p) + projector.blur;
        if (squared > nearest * nearest) {
            const double turn = std::atan2(y, x) * (0.5 / pi);
            turns[i] = turn < 0 ? turn + 1 : turn;
            sure[sure_count++] = i;
        }
        heights[i] = sphere ? 0.5 + std::atan2(z, std::sqrt(squared)) / pi : z;
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
    projector.origin = widened(frame.origin);
    const Vector u = difference(widened(frame.upoint), projector.origin);
    const Vector v = difference(widened(frame.vpoint), projector.origin);
    const Vector w = difference(widened(frame.wpoint), projector.origin);
    const bool box = frame.model == tv::ProjectionModel::box; // the others' wpoint has no meaning
    if (!finite(projector.origin) || !finite(u) || !finite(v) || (box && !finite(w))) return projector;
    for (const double x : projector.origin) projector.blur = std::max(projector.blur, std::abs(x) * 2.4e-7);

    switch (frame.model) {
    case tv::ProjectionModel::orthographic: prepare_plane(projector, u, v); break;
    case tv::ProjectionModel::cylindrical:
    case tv::ProjectionModel::spherical: prepare_round(projector, u, v); break;
    case tv::ProjectionModel::box: prepare_box(projector, u, v, w); break;
    }
    return projector;
}

void project_triangle(const UvProjector& projector, const std::array<std::array<double, 3>, 3>& points,
                      const std::array<double, 3>& normal, std::span<Uv, 3> out)
{
    Triangle offsets;
    double sum = 0; // not finite as soon as one of the nine isn't
    for (std::size_t i = 0; i < 3; i++) {
        offsets[i] = difference(points[i], projector.origin);
        sum += std::abs(offsets[i][0]) + std::abs(offsets[i][1]) + std::abs(offsets[i][2]);
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
