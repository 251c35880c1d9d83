#include "export/gltf/channel_track.h"

#include <algorithm>
#include <cmath>

#include "lib/toolkit/animation.h"

namespace gltf {

namespace {

bool is_finite(const tv::Key& key)
{
    return std::isfinite(key.value) && std::isfinite(key.tension) && std::isfinite(key.continuity) &&
           std::isfinite(key.bias);
}

Track own_knots(const std::vector<tv::Key>& keys, TrackFaults& faults)
{
    Track track(keys.size());
    for (std::size_t i = 0; i < keys.size(); ++i) {
        Knot& knot = track[i];
        knot.time = keys[i].time;
        knot.value_in = knot.value_out = keys[i].value;
        const tv::Tangents tangents = keys.size() > 1 ? tv::tangents(keys, i) : tv::Tangents{};
        if (i > 0) knot.slope_in = tangents.in / (static_cast<double>(keys[i].time) - keys[i - 1].time);
        if (i + 1 < keys.size()) knot.slope_out = tangents.out / (static_cast<double>(keys[i + 1].time) - keys[i].time);
        if (!std::isfinite(knot.slope_in) || !std::isfinite(knot.slope_out)) {
            knot.slope_in = knot.slope_out = 0;
            ++faults.not_finite;
        }
    }
    return track;
}

// The knot where one turn of a cycle ends and the next starts.
Knot seam(const Track& turn, double time)
{
    return {time, turn.back().value_in, turn.front().value_out, turn.back().slope_in, turn.front().slope_out};
}

// Copies of `turn` behind it, until `end` is covered.
bool repeat_behind(const Track& turn, double end, std::size_t limit, Track& track)
{
    const double period = turn.back().time - turn.front().time;
    double shift = period;
    std::size_t made = 0;
    while (track.back().time < end) {
        track.back() = seam(turn, track.back().time);
        for (std::size_t i = 1; i < turn.size() && track.back().time < end; ++i) {
            if (++made > limit) return false;
            track.push_back(turn[i]);
            track.back().time += shift;
        }
        shift += period;
    }
    return true;
}

bool repeat_before(const Track& turn, double start, std::size_t limit, Track& track)
{
    const double period = turn.back().time - turn.front().time;
    Track before; // latest knot first
    double shift = -period;
    double reached = turn.front().time;
    bool complete = true;
    while (complete && reached > start) {
        (before.empty() ? track.front() : before.back()) = seam(turn, reached);
        for (std::size_t i = turn.size() - 1; i-- > 0 && reached > start;) {
            if (before.size() >= limit) {
                complete = false;
                break;
            }
            before.push_back(turn[i]);
            before.back().time += shift;
            reached = before.back().time;
        }
        shift -= period;
    }
    track.insert(track.begin(), before.rbegin(), before.rend());
    return complete;
}

} // namespace

Track make_track(const tv::Channel& channel, double fallback, const TrackLimits& limits, TrackFaults& faults)
{
    std::vector<tv::Key> keys = tv::sorted_keys(channel);
    faults.not_finite += std::erase_if(keys, [](const tv::Key& key) { return !is_finite(key); });
    if (keys.empty()) return {Knot{0, fallback, fallback, 0, 0}};

    const Track own = own_knots(keys, faults);
    Track track = own;
    if (own.size() < 2) return track;
    bool complete = true;
    if (channel.after == tv::Extrapolation::cycle)
        complete = repeat_behind(own, limits.end, limits.knots, track);
    else if (channel.after == tv::Extrapolation::reset && limits.end > own.back().time)
        track.back().value_out = own.front().value_in;
    if (channel.before == tv::Extrapolation::cycle) complete &= repeat_before(own, limits.start, limits.knots, track);
    if (!complete) ++faults.cut;
    return track;
}

Sample sample(const Track& track, double time, bool behind)
{
    // The first knot behind `time`; with `behind` off, a knot at `time` counts as behind it.
    const auto next = behind ? std::upper_bound(track.begin(), track.end(), time,
                                                [](double t, const Knot& knot) { return t < knot.time; })
                             : std::lower_bound(track.begin(), track.end(), time,
                                                [](const Knot& knot, double t) { return knot.time < t; });
    if (next == track.begin()) {
        // Before everything the value holds; a knot at `time` may still start a slope of its own.
        const bool at_knot = next->time == time;
        return {next->value_in, at_knot ? next->slope_in : 0};
    }
    const Knot& from = *(next - 1);
    if (next == track.end()) return {from.value_out, from.time == time ? from.slope_out : 0};
    const Knot& to = *next;
    const double length = to.time - from.time;
    const double s = (time - from.time) / length;
    const double a = from.slope_out * length, b = to.slope_in * length;
    const double rise = to.value_in - from.value_out;
    // Hermite: value = from + a s + (3 rise - 2 a - b) s^2 + (a + b - 2 rise) s^3. The ends come out exactly.
    if (s >= 1) return {to.value_in, to.slope_in};
    const double square = 3 * rise - 2 * a - b, cube = a + b - 2 * rise;
    return {from.value_out + s * (a + s * (square + s * cube)), (a + s * (2 * square + 3 * s * cube)) / length};
}

bool is_constant(const Track& track)
{
    const double value = track.front().value_in;
    for (std::size_t i = 0; i < track.size(); ++i) {
        const Knot& knot = track[i];
        if (knot.value_in != value || knot.value_out != value) return false;
        if (i > 0 && knot.slope_in != 0) return false;
        if (i + 1 < track.size() && knot.slope_out != 0) return false;
    }
    return true;
}

std::vector<double> knot_times(std::span<const Track> tracks)
{
    std::vector<double> times;
    for (const Track& track : tracks)
        if (!is_constant(track))
            for (const Knot& knot : track) times.push_back(knot.time);
    std::sort(times.begin(), times.end());
    times.erase(std::unique(times.begin(), times.end()), times.end());
    return times;
}

bool jumps_at(std::span<const Track> tracks, double time)
{
    for (const Track& track : tracks) {
        const auto found = std::lower_bound(track.begin(), track.end(), time,
                                            [](const Knot& knot, double t) { return knot.time < t; });
        if (found != track.end() && found->time == time && found->jumps()) return true;
    }
    return false;
}

} // namespace gltf
