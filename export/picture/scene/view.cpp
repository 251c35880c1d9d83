#include "export/picture/scene/view.h"

#include <algorithm>
#include <cmath>
#include <glm/geometric.hpp>

namespace picture {

namespace {

constexpr double margin = 1.06;        // room round what is fitted
constexpr double fitted_tangent = 0.3; // half the angle of a fitted perspective view, on the narrower side

bool finite(const glm::dvec3& v)
{
    return std::isfinite(v.x) && std::isfinite(v.y) && std::isfinite(v.z);
}

// Axes of a view that looks against `backwards`.
glm::dmat3 axes_of(const glm::dvec3& backwards, const glm::dvec3& up)
{
    const glm::dvec3 back = glm::normalize(backwards), right = glm::normalize(glm::cross(up, back));
    return {right, glm::cross(back, right), back};
}

std::optional<Viewpoint> view_of(const gltf::Camera& camera, const glm::dmat4& world, double aspect)
{
    Viewpoint view;
    view.eye = world[3];
    const glm::dvec3 back(world[2]), up(world[1]), right = glm::cross(up, back);
    const double length = glm::length(right);
    if (!finite(view.eye) || !finite(right) || !(length > 0) || !(glm::length(back) > 0)) return {};
    view.axes = axes_of(back, up);
    view.perspective = camera.perspective;
    double width = 0;
    if (camera.perspective) {
        view.half_height = std::tan(std::clamp(camera.yfov, 1e-6, 3.14) / 2);
        width = view.half_height * (camera.aspect > 0 ? camera.aspect : aspect);
    } else {
        view.half_height = std::abs(camera.ymag);
        width = std::abs(camera.xmag);
    }
    if (!(view.half_height > 0) || !std::isfinite(view.half_height)) return {};
    view.half_width = view.half_height * aspect;
    if (view.half_width < width && std::isfinite(width)) {
        view.half_width = width;
        view.half_height = width / aspect;
    }
    return view;
}

} // namespace

std::optional<Viewpoint> camera_view(const gltf::Tables& tables, const Pose& pose, double aspect)
{
    std::optional<Viewpoint> result;
    uint32_t best = gltf::none;
    for (std::size_t i = 0; i < tables.nodes.size(); ++i) {
        const uint32_t camera = tables.nodes[i].camera;
        if (camera >= tables.cameras.size() || camera >= best || !pose.placed[i]) continue;
        if (auto view = view_of(tables.cameras[camera], pose.worlds[i], aspect)) {
            result = view;
            best = camera;
        }
    }
    return result;
}

Viewpoint fitted_view(View view, std::span<const glm::dvec3> points, double aspect)
{
    Viewpoint result;
    glm::dvec3 backwards(1, 0.7, 1.4), up(0, 1, 0);
    result.perspective = false;
    switch (view) {
    case View::front: backwards = {0, 0, 1}; break;
    case View::back: backwards = {0, 0, -1}; break;
    case View::left: backwards = {-1, 0, 0}; break;
    case View::right: backwards = {1, 0, 0}; break;
    case View::top:
        backwards = {0, 1, 0};
        up = {0, 0, -1};
        break;
    default: result.perspective = true;
    }
    result.axes = axes_of(backwards, up);

    // What is seen fits between two planes on each axis of the picture. In perspective these run through the eye: for
    // each side the outermost point tells where the plane lies, and two planes meet at the eye.
    const double tall = aspect >= 1 ? fitted_tangent : fitted_tangent / aspect;
    const double slope[2] = {result.perspective ? tall * aspect / margin : 0, result.perspective ? tall / margin : 0};
    double low[2] = {HUGE_VAL, HUGE_VAL}, high[2] = {-HUGE_VAL, -HUGE_VAL}, nearest = -HUGE_VAL, farthest = HUGE_VAL;
    const auto look_at = [&](const glm::dvec3& point) {
        if (!finite(point)) return;
        const glm::dvec3 seen = point * result.axes; // along right, up, backwards
        for (int i = 0; i < 2; ++i) {
            high[i] = std::max(high[i], seen[i] + slope[i] * seen.z);
            low[i] = std::min(low[i], seen[i] - slope[i] * seen.z);
        }
        nearest = std::max(nearest, seen.z);
        farthest = std::min(farthest, seen.z);
    };
    for (const glm::dvec3& point : points) look_at(point);
    if (nearest == -HUGE_VAL)
        for (const double side : {-1.0, 1.0}) look_at(glm::dvec3(side));

    const double size = std::max({high[0] - low[0], high[1] - low[1], nearest - farthest, 1e-30});
    glm::dvec3 eye((high[0] + low[0]) / 2, (high[1] + low[1]) / 2, 0);
    if (result.perspective) {
        result.half_width = tall * aspect;
        result.half_height = tall;
        for (int i = 0; i < 2; ++i) eye.z = std::max(i == 0 ? -HUGE_VAL : eye.z, (high[i] - low[i]) / (2 * slope[i]));
        if (!(eye.z > nearest)) eye.z = nearest + size; // a point, or a line of sight
    } else {
        const double least = 1e-3 * size; // what is seen edge-on
        result.half_width = std::max((high[0] - low[0]) / 2 * margin, least);
        result.half_height = std::max((high[1] - low[1]) / 2 * margin, least);
        result.half_width = std::max(result.half_width, result.half_height * aspect);
        result.half_height = result.half_width / aspect;
        eye.z = nearest + size;
    }
    result.eye = result.axes * eye;
    return result;
}

} // namespace picture
