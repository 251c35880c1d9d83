#include "export/gltf/scene/camera.h"

#include <algorithm>
#include <cmath>
#include <glm/geometric.hpp>

#include "export/gltf/base/vectors.h"
#include "export/gltf/scene/nodes.h"
#include "lib/platform/latin1.h"
#include "lib/toolkit/units.h"

namespace gltf {

namespace {

constexpr std::size_t most_steps = 100000; // frames walked to reach a still's

// Without roll: level, the Y axis up in the picture.
glm::dquat level(const glm::dvec3& direction)
{
    return look_along(direction, {0, 1, 0});
}

glm::dvec3 value_of(const std::array<Track, 3>& tracks, double time)
{
    return {value_at(tracks[0], time), value_at(tracks[1], time), value_at(tracks[2], time)};
}

bool has_keys(const tv::CameraChannels& channels)
{
    const auto keys = [](const tv::Channel& channel) { return !channel.keys.empty(); };
    return std::any_of(channels.look_from.begin(), channels.look_from.end(), keys) ||
           std::any_of(channels.look_at.begin(), channels.look_at.end(), keys) || keys(channels.roll);
}

double yfov_of(double half_height, double distance)
{
    const double yfov = 2 * std::atan2(half_height, distance);
    return yfov > 1e-4 ? std::min(yfov, 3.1) : yfov > 0 ? 1e-4 : 0.6;
}

// Of a zoom factor: half the picture's height is 1 / zoom at the distance 1.
double yfov_of_zoom(double zoom)
{
    return yfov_of(1, std::max(zoom, 1e-3));
}

} // namespace

LookPath::LookPath(const tv::Camera& camera, Animator& animator)
{
    moves_ = has_keys(camera.channels);
    for (std::size_t i = 0; i < 3; ++i) {
        from[i] = animator.track(camera.channels.look_from[i], camera.look_from[i]);
        at[i] = animator.track(camera.channels.look_at[i], camera.look_at[i]);
    }
    roll = animator.track(camera.channels.roll, 0);
    still_ = look_along(vector_of(camera.look_at) - vector_of(camera.look_from), vector_of(camera.look_up));
    if (!moves_) return;
    // The up vector belongs to the first key and holds its roll already. What it has beyond that, such as half a turn
    // where the camera starts upside down, stays for the whole path.
    double first = HUGE_VAL;
    for (const auto* tracks : {&from, &at})
        for (const Track& track : *tracks) first = std::min(first, track.front().time);
    first = std::min(first, roll.front().time);
    const glm::dvec3 direction = value_of(at, first) - value_of(from, first);
    const glm::dquat start = look_along(direction, vector_of(camera.look_up));
    const glm::dquat difference = glm::conjugate(level(direction)) * start;
    turn_ = 2 * std::atan2(difference.z, difference.w) - value_at(roll, first) * tv::radians_per_degree;
}

glm::dquat LookPath::orientation(double time)
{
    if (!moves_) return still_;
    constexpr double small_step = 0.866; // cosine of 30 degrees
    glm::dvec3 direction = value_of(at, time) - value_of(from, time);
    const double length = glm::length(direction);
    direction = length > 0 && std::isfinite(length) ? direction / length : direction_;
    const glm::dquat base = level(direction);
    const glm::dvec3 right = base * glm::dvec3(1, 0, 0);
    // Over the zenith "level" turns half round from one moment to the next, though the camera looks nearly the same way.
    // It doesn't: it goes on upside down. A cut, where the direction changes too, isn't that.
    if (started_ && glm::dot(direction, direction_) > small_step && glm::dot(right, right_) < 0)
        upside_down_ = !upside_down_;
    started_ = true;
    direction_ = direction;
    right_ = right;
    // Seen along the line of sight the roll turns to the left: about +Z of a camera that looks along -Z.
    const double angle = value_at(roll, time) * tv::radians_per_degree + turn_ + (upside_down_ ? tv::pi : 0);
    return base * glm::angleAxis(angle, glm::dvec3(0, 0, 1));
}

namespace {

// The camera itself, without its node.
Camera make_lens(const tv::Camera& camera, const tv::Scene& scene, double unit)
{
    Camera result;
    result.name = platform::latin1_to_utf8(camera.name);
    result.perspective = camera.perspective;
    const double width = std::abs(static_cast<double>(camera.window[0]));
    const double height = std::abs(static_cast<double>(camera.window[1]));
    const double focal = std::abs(static_cast<double>(camera.focal_length));
    double aspect = scene.resolution[0] > 0 && scene.resolution[1] > 0
                        ? static_cast<double>(scene.resolution[0]) / scene.resolution[1]
                        : width / height;
    if (!(aspect > 1e-3 && aspect < 1e3)) aspect = 1;
    result.yfov = camera.zoom ? yfov_of_zoom(camera.zoom->rest) : yfov_of(height / 2, focal);
    result.aspect = aspect;
    result.ymag = file_float(height / 2 * unit) > 0 ? height / 2 * unit : unit;
    result.xmag = result.ymag * aspect;
    // Near enough for a close look, not so near that a depth buffer of 24 bits fails on the far side of the scene.
    const double distance = glm::distance(vector_of(camera.look_from), vector_of(camera.look_at));
    result.znear = std::clamp(std::isfinite(distance) ? distance / 1000 : 0.0, 0.004, 0.1) * unit;
    if (!result.perspective) {
        result.zfar = 10000 * unit + result.znear;
        result.znear = 0;
    }
    return result;
}

uint32_t add_look_node(const tv::Camera& camera, const std::string& name, const RigParts& parts)
{
    Animator& animator = parts.animator;
    Node node;
    node.name = name;
    const auto number = static_cast<uint32_t>(parts.tables.nodes.size());
    LookPath path(camera, animator);
    Placing placing;
    placing.translation = value_of(path.from, animator.start_time()) * parts.scale;
    // Walked in frames to where the still is, or the time line starts: see LookPath.
    LookPath walk = path;
    const std::array<Track, 7> all = {path.from[0], path.from[1], path.from[2], path.at[0],
                                      path.at[1],   path.at[2],   path.roll};
    const Span span = span_of(all);
    const double begin = span.knots == 0 ? animator.start_time() : span.first;
    const double step = std::max(animator.frame(), (animator.start_time() - begin) / static_cast<double>(most_steps));
    for (double time = begin; time < animator.start_time(); time += step) walk.orientation(time);
    placing.rotation = walk.orientation(animator.start_time());
    place_node(node, placing);
    animator.add_channel(AnimationChannel::Path::translation, animator.spline_sampler(path.from, parts.scale), number);
    animator.add_channel(
        AnimationChannel::Path::rotation,
        animator.rotation_sampler({all, [&](double time) { return path.orientation(time); }, {}, true}), number);
    parts.tables.roots.push_back(number);
    parts.tables.nodes.push_back(std::move(node));
    return number;
}

} // namespace

void make_cameras(const tv::Scene& scene, const Options& options, const RigParts& parts)
{
    std::vector<const tv::Camera*> cameras;
    for (const tv::Camera& camera : scene.cameras)
        if (camera.alive) cameras.push_back(&camera);
    std::stable_partition(cameras.begin(), cameras.end(), [](const tv::Camera* camera) { return camera->active; });

    for (const tv::Camera* camera : cameras) {
        Camera result = make_lens(*camera, scene, options.scale);
        if (camera->active && cameras.size() > 1) result.extras["active"] = true;
        const uint32_t node = camera->rig ? add_rig(parts.stage.mover(*camera->rig), result.name, parts)
                                          : add_look_node(*camera, result.name, parts);
        const auto number = static_cast<uint32_t>(parts.tables.cameras.size());
        parts.tables.nodes[node].camera = number;
        parts.tables.cameras.push_back(std::move(result));
        if (!camera->zoom || !camera->perspective) continue;
        const Track track = parts.animator.track(camera->zoom->channel, camera->zoom->rest);
        parts.animator.add_pointer("/cameras/" + std::to_string(number) + "/perspective/yfov",
                                   parts.animator.value_sampler(std::span(&track, 1), Element::scalar,
                                                                [&](double time, std::span<double> out) {
                                                                    out[0] = yfov_of_zoom(value_at(track, time));
                                                                }));
    }
}

} // namespace gltf
