#include "export/gltf/animation/animation.h"

#include <algorithm>
#include <cmath>
#include <glm/geometric.hpp>

#include "export/gltf/base/notes.h"
#include "lib/toolkit/animation/animation.h"
#include "lib/toolkit/units.h"

namespace gltf {

namespace {

constexpr double units_per_second = tv::time_units_per_second;
// Samples that the arc between others gives this closely are left out: at the end of an arm of 10 units it is a third of
// a thousandth.
constexpr double rotation_tolerance = 0.002 * tv::radians_per_degree; // radians
constexpr double still_rotation = 1e-6;                               // radians: turns below this are none
// Between two samples the shortest arc stays nearer than 0.05 degrees: tested at three places, with room for the others.
constexpr double fine_rotation = 0.03 * tv::radians_per_degree; // radians
constexpr double widest_step = 1.7;                             // radians of Euler angles between two samples
constexpr double value_tolerance = 1e-3;                        // of a value's range
constexpr std::size_t track_knots = 100000;                     // a channel's, beyond its own
constexpr std::size_t all_knots = 20000000;                     // the file's, beyond the scene's own

} // namespace

Animator::Animator(const tv::Scene& scene, const Options& options, Tables& tables, Report& report)
    : scene_(scene), tables_(tables), report_(report), scale_(options.scale), still_(options.frame.has_value()),
      frame_rate_(scene.clip ? std::clamp(scene.clip->rate, 1e-3, 4800.0)
                             : std::clamp(scene.time_line.frame_rate, 1, 4800)),
      fine_rotations_(options.fine_rotations), budget_(all_knots)
{
    const double rate = scene.clip ? frame_rate_ : std::max(1, scene.time_line.frame_rate);
    const double start = scene.clip ? scene.clip->first_frame * units_per_second / rate : scene.time_line.start;
    const double end = scene.clip ? scene.clip->last_frame * units_per_second / rate : scene.time_line.end;
    start_time_ = still_ ? *options.frame * units_per_second / rate : start;
    limits_.start = still_ ? start_time_ : start;
    limits_.end = still_ ? start_time_ : std::max(start, end);
    clip_ = {limits_.start, limits_.end, 0};
    if (scene.clip) {
        first_time_ = limits_.start;
        return;
    }

    double first = limits_.start;
    const auto look_at = [&](const tv::Channel& channel) {
        for (const tv::Key& key : channel.keys) first = std::min(first, static_cast<double>(key.time));
    };
    for (const tv::Instance& instance : scene.instances) {
        if (!instance.alive || !instance.channels) continue;
        for (const auto* set : {&instance.channels->position, &instance.channels->scale, &instance.channels->rotation})
            for (const tv::Channel& channel : *set) look_at(channel);
    }
    for (const tv::Camera& camera : scene.cameras) {
        for (const auto* set : {&camera.channels.look_from, &camera.channels.look_at})
            for (const tv::Channel& channel : *set) look_at(channel);
        look_at(camera.channels.roll);
    }
    first_time_ = std::min(first, 0.0);
}

double Animator::frame() const
{
    return units_per_second / frame_rate_;
}

Track Animator::track(const tv::Channel& channel, double fallback)
{
    limits_.knots = std::min(track_knots, budget_);
    Track result = make_track(channel, fallback, limits_, faults_);
    if (scene_.clip && !still_ && result.size() > 1) result = crop(result, limits_.start, limits_.end);
    if (result.size() > channel.keys.size()) budget_ -= std::min(budget_, result.size() - channel.keys.size());
    return result;
}

std::array<Track, 3> Animator::tracks(const std::array<tv::Channel, 3>& channels, double fallback)
{
    return {track(channels[0], fallback), track(channels[1], fallback), track(channels[2], fallback)};
}

glm::dquat rotation_at(std::span<const Track, 3> angles, double time)
{
    return euler_rotation(value_at(angles[0], time), value_at(angles[1], time), value_at(angles[2], time));
}

const Motion& Animator::motion(tv::Id id)
{
    const auto [entry, added] = motions_.try_emplace(id);
    Motion& motion = entry->second;
    if (!added) return motion;
    const tv::InstanceChannels& channels = *scene_.instances[id].channels;
    const std::array<Track, 3> position = tracks(channels.position, 0), scale = tracks(channels.scale, 1),
                               angle = tracks(channels.rotation, 0);
    const auto rotation = [&](double time) { return rotation_at(angle, time); };
    for (int i = 0; i < 3; ++i) {
        const auto k = static_cast<std::size_t>(i);
        motion.start.translation[i] = value_at(position[k], start_time_) * scale_;
        motion.start.scale[i] = value_at(scale[k], start_time_);
    }
    motion.start.rotation = rotation(start_time_);
    motion.translation = spline_sampler(position, scale_);
    motion.scale = spline_sampler(scale, 1);
    motion.rotation = rotation_sampler({angle, rotation, angle});
    return motion;
}

// Key times in seconds from the file's start, strictly rising also where 32 bits can't tell two of them apart.
std::vector<float> Animator::seconds(const std::vector<Moment>& moments) const
{
    std::vector<float> result;
    result.reserve(moments.size());
    for (const Moment& moment : moments) {
        float second = file_float((moment.time - first_time_) / units_per_second);
        if (!result.empty() && second <= result.back()) second = std::nextafter(result.back(), HUGE_VALF);
        result.push_back(second);
    }
    return result;
}

uint32_t Animator::input(const std::vector<float>& times)
{
    const auto [entry, added] = inputs_.try_emplace(times, 0);
    if (added) entry->second = tables_.buffer.add(Stretch::keys, Element::scalar, times, true);
    return entry->second;
}

uint32_t Animator::spline_sampler(const std::array<Track, 3>& tracks, double factor)
{
    if (still_ || (is_constant(tracks[0]) && is_constant(tracks[1]) && is_constant(tracks[2]))) return none;
    const std::vector<Moment> keys = moments(tracks, 0);
    std::vector<float> values; // for each key slopes in, values, slopes out, three numbers each
    values.reserve(keys.size() * 9);
    const double per_second = units_per_second * factor;
    for (std::size_t i = 0; i < keys.size(); ++i) {
        // Across a jump the line goes straight up: no slope on either side of it.
        const double in = keys[i].flat ? 0 : per_second;
        const double out = i + 1 < keys.size() && keys[i + 1].flat ? 0 : per_second;
        for (const Track& track : tracks) values.push_back(file_float(slope_at(track, keys[i].of, false) * in));
        for (const Track& track : tracks) values.push_back(file_float(value_at(track, keys[i].of) * factor));
        for (const Track& track : tracks) values.push_back(file_float(slope_at(track, keys[i].of, true) * out));
    }
    AnimationSampler sampler; // three values a key: add_sampler has one
    sampler.cubic = true;
    sampler.input = input(seconds(keys));
    sampler.output = tables_.buffer.add(Stretch::keys, Element::vec3, values, false);
    tables_.animation.samplers.push_back(sampler);
    return static_cast<uint32_t>(tables_.animation.samplers.size() - 1);
}

// Time between two samples, 1/4800 s: a frame, or more where that would be too many.
double Animator::frame_step(const Span& span)
{
    const double step = frame();
    const double allowed = static_cast<double>(std::max<std::size_t>(std::min(track_knots, budget_), 1));
    const double wanted = (span.last - span.first) / step;
    budget_ -= std::min(budget_, static_cast<std::size_t>(std::min(wanted, allowed)) + span.knots);
    if (wanted <= allowed) return step;
    ++coarse_;
    return step * std::ceil(wanted / allowed);
}

uint32_t Animator::add_sampler(const std::vector<float>& times, Element element, const std::vector<float>& values)
{
    AnimationSampler sampler;
    sampler.input = input(times);
    sampler.output = tables_.buffer.add(Stretch::keys, element, values, false);
    tables_.animation.samplers.push_back(sampler);
    return static_cast<uint32_t>(tables_.animation.samplers.size() - 1);
}

// Puts moments between two where a reader that goes straight from one to the other would be too far off, by halves.
void Animator::refine(std::vector<Moment>& moments, const std::function<bool(double from, double to)>& too_far)
{
    constexpr int deepest = 12; // halvings
    struct Part {
        double from, to;
        int depth;
    };
    std::vector<Moment> refined;
    refined.reserve(moments.size());
    std::vector<Part> parts;
    for (std::size_t i = 0; i < moments.size(); ++i) {
        refined.push_back(moments[i]);
        if (i + 1 == moments.size() || moments[i + 1].flat || moments[i].time != moments[i].of) continue;
        parts.assign(1, {moments[i].time, moments[i + 1].time, 0});
        while (!parts.empty()) {
            const Part part = parts.back();
            parts.pop_back();
            const double middle = (part.from + part.to) / 2;
            const bool split = part.depth < deepest && budget_ > 0 && part.to - part.from > 4 * jump_length &&
                               too_far(part.from, part.to);
            if (split) {
                --budget_;
                parts.push_back({middle, part.to, part.depth + 1});
                parts.push_back({part.from, middle, part.depth + 1});
            } else if (part.to != moments[i + 1].time) {
                refined.push_back({part.to, part.to, false});
            }
        }
    }
    moments = std::move(refined);
}

uint32_t Animator::rotation_sampler(const Turning& turning)
{
    const Span span = span_of(turning.tracks);
    if (still_ || span.knots == 0) return none;
    std::vector<Moment> keys = moments(turning.tracks, frame_step(span));
    if (fine_rotations_ && !turning.rising) {
        refine(keys, [&](double from, double to) {
            const glm::dquat first = turning.at(from), last = turning.at(to);
            double travel = 0; // of the Euler angles: a turn of more than half a circle looks like a short one
            double before = from;
            for (int i = 1; i <= 4; ++i) {
                const double share = i / 4.0, time = from + (to - from) * share;
                if (i < 4 && angle_between(glm::slerp(first, last, share), turning.at(time)) > fine_rotation)
                    return true;
                for (const Track& angle : turning.angles)
                    travel += std::abs(value_at(angle, time) - value_at(angle, before));
                before = time;
            }
            return travel > widest_step;
        });
    }
    std::vector<glm::dquat> rotations;
    rotations.reserve(keys.size());
    double widest = 0;
    for (const Moment& key : keys) {
        rotations.push_back(turning.at(key.of));
        widest = std::max(widest, angle_between(rotations.front(), rotations.back()));
    }
    if (widest < still_rotation) return none;

    const std::vector<float> times = seconds(keys);
    std::vector<float> kept_times, values;
    glm::dquat last(1, 0, 0, 0);
    for (const std::size_t i : needed_rotations(times, rotations, rotation_tolerance)) {
        // One hemisphere: a quaternion and its negative are one orientation, but the way between two must be the short.
        glm::dquat q = rotations[i];
        if (!values.empty() && glm::dot(q, last) < 0) q = -q;
        last = q;
        kept_times.push_back(times[i]);
        for (const double part : {q.x, q.y, q.z, q.w}) values.push_back(file_float(part));
    }
    return add_sampler(kept_times, Element::vec4, values);
}

uint32_t Animator::value_sampler(std::span<const Track> tracks, Element element,
                                 const std::function<void(double time, std::span<double> out)>& values)
{
    const Span span = span_of(tracks);
    if (still_ || span.knots == 0) return none;
    const std::size_t parts = static_cast<std::size_t>(element) + 1;
    using Parts = std::array<double, 4>;
    const auto at = [&](double time) {
        Parts out{};
        values(time, std::span(out).first(parts));
        return out;
    };
    std::vector<Moment> keys = moments(tracks, frame_step(span));
    double low = HUGE_VAL, high = -HUGE_VAL;
    for (const Moment& key : keys) {
        const Parts value = at(key.of);
        for (std::size_t i = 0; i < parts; ++i) {
            low = std::min(low, value[i]);
            high = std::max(high, value[i]);
        }
    }
    if (!(high > low) && parts == 1) return none;
    const double tolerance = value_tolerance * std::max(high - low, 1e-6 * std::abs(high));
    const auto off_line = [&](const Parts& from, const Parts& to, double share, const Parts& value) {
        for (std::size_t i = 0; i < parts; ++i)
            if (std::abs(from[i] + (to[i] - from[i]) * share - value[i]) > tolerance) return true;
        return false;
    };
    refine(keys, [&](double from, double to) {
        const Parts first = at(from), last = at(to);
        for (const double share : {0.25, 0.5, 0.75})
            if (off_line(first, last, share, at(from + (to - from) * share))) return true;
        return false;
    });
    const std::vector<float> times = seconds(keys);
    std::vector<float> kept_times, numbers;
    bool constant = true;
    for (std::size_t i = 0; i < keys.size(); ++i) {
        const Parts value = at(keys[i].of);
        constant = constant && value == at(keys.front().of);
        kept_times.push_back(times[i]);
        for (std::size_t k = 0; k < parts; ++k) numbers.push_back(file_float(value[k]));
    }
    return constant ? none : add_sampler(kept_times, element, numbers);
}

uint32_t Animator::step_sampler(std::span<const Track> tracks, Element element,
                                const std::function<bool(double time)>& value)
{
    const Span span = span_of(tracks);
    if (still_ || span.knots == 0) return none;
    const std::vector<Moment> keys = moments(tracks, frame_step(span));
    const std::vector<float> times = seconds(keys);
    const std::size_t parts = static_cast<std::size_t>(element) + 1;
    std::vector<float> kept_times, numbers;
    bool last = false, constant = true;
    for (std::size_t i = 0; i < keys.size(); ++i) {
        // It holds until the next one: there already, where it begins on the way.
        const bool on_the_way = i + 1 < keys.size() && value((keys[i].time + keys[i + 1].time) / 2);
        const bool now = value(keys[i].of) || on_the_way;
        const bool change = i == 0 || now != last;
        constant = constant && (i == 0 || !change);
        last = now;
        if (!change && i + 1 != keys.size()) continue;
        kept_times.push_back(times[i]);
        numbers.insert(numbers.end(), parts, now ? 1.0f : 0.0f);
    }
    if (constant) return none;
    const uint32_t sampler = add_sampler(kept_times, element, numbers);
    tables_.animation.samplers[sampler].step = true;
    return sampler;
}

void Animator::add_channel(AnimationChannel::Path path, uint32_t sampler, uint32_t node)
{
    if (sampler != none) tables_.animation.channels.push_back({path, sampler, node, {}});
}

void Animator::add_pointer(std::string pointer, uint32_t sampler)
{
    if (sampler != none)
        tables_.animation.channels.push_back({AnimationChannel::Path::pointer, sampler, none, std::move(pointer)});
}

void Animator::finish()
{
    Json range = Json::object();
    if (const auto& clip = scene_.clip) {
        const double rate = frame_rate_;
        range = {{"startFrame", clip->first_frame},
                 {"endFrame", clip->last_frame},
                 {"frameRate", clip->rate},
                 {"start", 0.0},
                 {"end", std::max(clip->last_frame - clip->first_frame, 0.0) / rate},
                 {"frameZero", -clip->first_frame / rate + 0.0}};
    } else {
        const tv::TimeLine& line = scene_.time_line;
        const double rate = std::max(1, line.frame_rate);
        range = {{"startFrame", line.start * rate / units_per_second},
                 {"endFrame", line.end * rate / units_per_second},
                 {"frameRate", line.frame_rate},
                 {"start", (line.start - first_time_) / units_per_second},
                 {"end", (line.end - first_time_) / units_per_second}};
        // Frame 0 stands at this second: glTF's time can't go below 0, so everything was moved where keys did.
        if (first_time_ < 0) range["frameZero"] = -first_time_ / units_per_second;
    }
    tables_.scene_extras["timeLine"] = range;
    if (!tables_.animation.channels.empty()) tables_.animation.extras["timeLine"] = std::move(range);

    if (faults_.not_finite != 0) report_.notes.push_back(message<"keys-not-finite">(faults_.not_finite));
    if (faults_.cut != 0) report_.notes.push_back(message<"channels-cut">(faults_.cut));
    if (coarse_ != 0) report_.notes.push_back(message<"rotations-coarse">(coarse_));
}

std::vector<std::size_t> needed_rotations(std::span<const float> times, std::span<const glm::dquat> rotations,
                                          double tolerance)
{
    // From a kept sample every later one is told as a constant turn, a vector of angle by time. A turn that ends in a
    // sample gives all between within the tolerance when it lies in the intersection of the balls round their own
    // turns. The cubes inside the balls stand for them, so that the intersection costs the same however many there are.
    // (Between two turns by w and v during t the angle is at most |w - v| t.)
    constexpr double widest = 2.6; // radians; well below pi, where the shortest arc changes sides
    const double inside = tolerance / std::sqrt(3.0);
    std::vector<std::size_t> kept;
    if (times.empty()) return kept;
    kept.push_back(0);
    glm::dvec3 lower(-HUGE_VAL), upper(HUGE_VAL);
    std::size_t from = 0;
    for (std::size_t i = 1; i < times.size();) {
        glm::dquat turn = glm::conjugate(rotations[from]) * rotations[i];
        if (turn.w < 0) turn = -turn;
        const double sine = std::hypot(turn.x, turn.y, turn.z);
        const double angle = 2 * std::atan2(sine, turn.w);
        const double time = static_cast<double>(times[i]) - times[from];
        const glm::dvec3 speed =
            sine > 0 ? glm::dvec3(turn.x, turn.y, turn.z) * (angle / (sine * time)) : glm::dvec3(0, 0, 0);
        const bool reached = glm::all(glm::greaterThanEqual(speed, lower)) &&
                             glm::all(glm::lessThanEqual(speed, upper)) && angle < widest;
        if (!reached && i > from + 1) {
            from = i - 1;
            kept.push_back(from);
            lower = glm::dvec3(-HUGE_VAL);
            upper = glm::dvec3(HUGE_VAL);
            continue; // the same sample, seen from the one just kept
        }
        lower = glm::max(lower, speed - inside / time);
        upper = glm::min(upper, speed + inside / time);
        ++i;
    }
    if (kept.back() != times.size() - 1) kept.push_back(times.size() - 1);
    return kept;
}

} // namespace gltf
