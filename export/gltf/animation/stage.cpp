#include "export/gltf/animation/stage.h"

#include <algorithm>
#include <cmath>
#include <glm/geometric.hpp>
#include <glm/gtc/matrix_inverse.hpp>
#include <glm/gtc/matrix_transform.hpp>

#include "lib/toolkit/animation/animation.h"

namespace gltf {

namespace {

glm::dvec3 vector_of(const std::array<Track, 3>& tracks, double time)
{
    return {value_at(tracks[0], time), value_at(tracks[1], time), value_at(tracks[2], time)};
}

std::array<Track, 3> still_tracks(const glm::dvec3& v)
{
    return {Track{Knot{0, v.x, v.x, 0, 0, false}}, Track{Knot{0, v.y, v.y, 0, 0, false}},
            Track{Knot{0, v.z, v.z, 0, 0, false}}};
}

glm::dvec3 pivot_of(const tv::Instance& instance)
{
    if (!instance.axes.origin_enabled) return glm::dvec3(0);
    const auto& row = instance.axes.axes_matrix[3];
    return {row[0], row[1], row[2]};
}

} // namespace

bool Stage::has_targets(const tv::Scene& scene)
{
    return std::any_of(scene.instances.begin(), scene.instances.end(),
                       [](const tv::Instance& instance) { return instance.alive && instance.target != tv::no_id; });
}

tv::Id Stage::parent_of(tv::Id id)
{
    const tv::Instance& instance = scene_.instances[id];
    if (instance.parent_kind == tv::Kind::instance) return instance.parent;
    if (instance.parent_kind != tv::Kind::object) return tv::no_id;
    if (!holders_) {
        holders_.emplace(scene_.objects.size(), tv::no_id);
        for (tv::Id i = static_cast<tv::Id>(scene_.instances.size()); i-- > 0;)
            if (scene_.instances[i].alive && scene_.instances[i].object != tv::no_id)
                (*holders_)[scene_.instances[i].object] = i;
    }
    return (*holders_)[instance.parent];
}

Mover Stage::mover(const tv::Rig& rig)
{
    Mover mover;
    for (std::size_t i = 0; i < 3; ++i) {
        mover.position[i] = animator_.track(rig.channels.position[i], rig.position[i]);
        mover.angles[i] = animator_.track(rig.channels.rotation[i], rig.rotation[i]);
    }
    mover.scale = still_tracks({1, 1, 1});
    mover.pivot = {rig.pivot[0], rig.pivot[1], rig.pivot[2]};
    mover.parent = rig.parent;
    mover.target = rig.target;
    return mover;
}

const Mover& Stage::mover(tv::Id id)
{
    const auto [entry, added] = movers_.try_emplace(id);
    Mover& mover = entry->second;
    if (!added) return mover;
    const tv::Instance& instance = scene_.instances[id];
    mover.parent = parent_of(id);
    mover.target = instance.target;
    if (tv::is_animated(instance)) {
        mover.position = animator_.tracks(instance.channels->position, 0);
        mover.scale = animator_.tracks(instance.channels->scale, 1);
        mover.angles = animator_.tracks(instance.channels->rotation, 0);
        mover.pivot = pivot_of(instance);
        return mover;
    }
    mover.matrix = to_glm(tv::local_matrix(instance, animator_.start_time()));
    mover.fixed = instance.target == tv::no_id;
    if (mover.fixed) return mover;
    // A matrix that was made of a placing: the pivot is in its translation, moved by the turn alone.
    const Decomposition parts = decompose(mover.matrix);
    const glm::dquat& turn = parts.outer.rotation;
    mover.pivot = pivot_of(instance);
    const glm::dvec3 place = parts.outer.translation + turn * (parts.outer.scale * mover.pivot);
    mover.position = still_tracks(place);
    mover.scale = still_tracks(parts.outer.scale);
    // Z first, then X, then Y: what -Z and +X become tells all three.
    const glm::dvec3 ahead = turn * glm::dvec3(0, 0, -1);
    const double x = std::asin(std::clamp(ahead.y, -1.0, 1.0)), y = std::atan2(-ahead.x, -ahead.z);
    const glm::dquat level = euler_rotation(x, y, 0);
    const glm::dquat bank = glm::conjugate(level) * turn;
    mover.angles = still_tracks({x, y, 2 * std::atan2(bank.z, bank.w)});
    return mover;
}

glm::dvec3 Stage::place(const Mover& mover, double time)
{
    const glm::dvec3 own = mover.fixed ? glm::dvec3(mover.matrix[3]) : vector_of(mover.position, time);
    if (mover.parent == tv::no_id) return own;
    return glm::dvec3(world(mover.parent, time) * glm::dvec4(own, 1));
}

// Heading and pitch in the world from the direction to the target, its own bank about that. Where there is no
// direction, it goes by its own angles.
glm::dquat Stage::aim(const Mover& mover, double time)
{
    constexpr int deepest = 64; // nobody aimed that many things one by the other; it bounds the recursion
    const glm::dquat own = rotation_at(mover.angles, time);
    if (depth_ == deepest) return own;
    ++depth_;
    const glm::dvec3 direction = place(this->mover(mover.target), time) - place(mover, time);
    --depth_;
    const double length = glm::length(direction);
    if (!(length > 0) || !std::isfinite(length)) return own;
    glm::dvec3 ahead = direction / length, up(0, 1, 0);
    if (mover.parent != tv::no_id) {
        const glm::dmat3 turn(world(mover.parent, time));
        const double volume = glm::determinant(turn);
        if (!(std::abs(volume) > 0) || !std::isfinite(volume)) return own;
        const glm::dmat3 back = glm::inverse(turn);
        ahead = back * ahead;
        up = back * up;
    }
    return look_along(ahead, up) * glm::angleAxis(value_at(mover.angles[2], time), glm::dvec3(0, 0, 1));
}

Placing Stage::placing(const Mover& mover, double time)
{
    Placing placing;
    placing.translation = vector_of(mover.position, time);
    placing.scale = vector_of(mover.scale, time);
    placing.rotation = mover.target == tv::no_id ? rotation_at(mover.angles, time) : aim(mover, time);
    return placing;
}

glm::dmat4 Stage::local(const Mover& mover, double time)
{
    if (mover.fixed) return mover.matrix;
    return compose(placing(mover, time)) * glm::translate(glm::dmat4(1), -mover.pivot);
}

glm::dmat4 Stage::world(const Mover& mover, double time)
{
    const glm::dmat4 own = local(mover, time);
    return mover.parent == tv::no_id ? own : world(mover.parent, time) * own;
}

Motion Stage::motion(const Mover& mover, double scale)
{
    Motion motion;
    motion.start = placing(mover, animator_.start_time());
    motion.start.translation *= scale;
    motion.translation = animator_.spline_sampler(mover.position, scale);
    motion.scale = animator_.spline_sampler(mover.scale, 1);
    const std::vector<Track> tracks = rotation_tracks(mover);
    const bool aimed = mover.target != tv::no_id;
    Turning turning{tracks, [&](double time) { return placing(mover, time).rotation; }};
    if (!aimed) turning.angles = mover.angles;
    motion.rotation = animator_.rotation_sampler(turning);
    return motion;
}

// From the root down, without recursion along parents: chains come 30,000 instances long. Targets recurse, but never in
// a circle, and each into a chain of its own.
glm::dmat4 Stage::world(tv::Id id, double time)
{
    if (time != time_) worlds_.clear();
    time_ = time;
    std::vector<tv::Id> chain;
    glm::dmat4 matrix(1);
    for (tv::Id at = id; at != tv::no_id; at = mover(at).parent) {
        const auto known = worlds_.find(at);
        if (known != worlds_.end()) {
            matrix = known->second;
            break;
        }
        chain.push_back(at);
    }
    for (std::size_t i = chain.size(); i-- > 0;) {
        matrix = matrix * local(mover(chain[i]), time);
        worlds_[chain[i]] = matrix;
    }
    return matrix;
}

// What moves the instance's place, and with_rotation the rest of its world too.
void Stage::add_chain(tv::Id instance, bool with_rotation, std::vector<Track>& out, std::vector<tv::Id>& seen)
{
    std::vector<tv::Id> open = {instance};
    bool first = true;
    while (!open.empty()) {
        const tv::Id id = open.back();
        open.pop_back();
        if (id == tv::no_id || std::find(seen.begin(), seen.end(), id) != seen.end()) continue;
        const bool whole = !first || with_rotation;
        first = false;
        const Mover& own = mover(id);
        if (whole) seen.push_back(id);
        if (!own.fixed) {
            out.insert(out.end(), own.position.begin(), own.position.end());
            if (whole) {
                out.insert(out.end(), own.scale.begin(), own.scale.end());
                out.insert(out.end(), own.angles.begin(), own.angles.end());
                if (own.target != tv::no_id) open.push_back(own.target);
            }
        }
        open.push_back(own.parent);
    }
}

std::vector<Track> Stage::rotation_tracks(const Mover& of)
{
    std::vector<Track> out(of.angles.begin(), of.angles.end());
    if (of.target == tv::no_id) return out;
    out.insert(out.end(), of.position.begin(), of.position.end());
    std::vector<tv::Id> seen;
    if (of.parent != tv::no_id) add_chain(of.parent, true, out, seen);
    add_chain(of.target, false, out, seen);
    return out;
}

} // namespace gltf
