#include "export/gltf/animation/channel_track.h"

#include <algorithm>
#include <cmath>

#include "lib/toolkit/animation/animation.h"

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
    for (std::size_t i = 1; i < keys.size(); ++i) {
        if (!keys[i].linear) continue;
        Knot &from = track[i - 1], &to = track[i];
        from.slope_out = to.slope_in = (to.value_in - from.value_out) / (to.time - from.time);
    }
    return track;
}

// The knot where one turn of a cycle ends and the next starts.
Knot seam(const Track& turn, double time)
{
    return {time, turn.back().value_in, turn.front().value_out, turn.back().slope_in, turn.front().slope_out, false};
}

// Copies of `turn` after it, until `end` is covered.
bool repeat_after(const Track& turn, double end, std::size_t limit, Track& track)
{
    const double period = turn.back().time - turn.front().time;
    double shift = period;
    std::size_t made = 0;
    while (track.back().time < end) {
        track.back() = seam(turn, track.back().time);
        track.back().late = shift == period; // the channel's own last key keeps its value
        for (std::size_t i = 1; i < turn.size() && track.back().time < end; ++i) {
            if (++made > limit) return false;
            track.push_back(turn[i]);
            track.back().time += shift;
        }
        shift += period;
    }
    // Where the range ends with a turn the next one's first value is what stands there.
    if (track.back().time == end && end > turn.back().time && track.back().value_in == turn.back().value_in &&
        track.back().time == turn.back().time + shift - period)
        track.back() = seam(turn, end);
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
    if (keys.empty()) return {Knot{0, fallback, fallback, 0, 0, false}};

    const Track own = own_knots(keys, faults);
    Track track = own;
    if (own.size() < 2) return track;
    bool complete = true;
    if (channel.after == tv::Extrapolation::cycle)
        complete = repeat_after(own, limits.end, limits.knots, track);
    else if (channel.after == tv::Extrapolation::reset && limits.end > own.back().time) {
        track.back().value_out = own.front().value_in;
        track.back().late = true;
    }
    if (channel.before == tv::Extrapolation::cycle) complete &= repeat_before(own, limits.start, limits.knots, track);
    if (!complete) ++faults.cut;
    return track;
}

namespace {

// The first knot after `time`, or at it where `after` is off.
Track::const_iterator next_knot(const Track& track, double time, bool after)
{
    return after ? std::upper_bound(track.begin(), track.end(), time,
                                    [](double t, const Knot& knot) { return t < knot.time; })
                 : std::lower_bound(track.begin(), track.end(), time,
                                    [](const Knot& knot, double t) { return knot.time < t; });
}

// A Hermite piece as a polynomial of s, 0 to 1: value = from + a s + square s^2 + cube s^3.
struct Piece {
    double from, a, square, cube, length;
    Piece(const Knot& left, const Knot& right) : from(left.value_out), length(right.time - left.time)
    {
        a = left.slope_out * length;
        const double b = right.slope_in * length, rise = right.value_in - left.value_out;
        square = 3 * rise - 2 * a - b;
        cube = a + b - 2 * rise;
    }
};

} // namespace

double value_at(const Track& track, double time)
{
    const auto next = next_knot(track, time, false);
    if (next != track.end() && next->time == time) return next->late ? next->value_in : next->value_out;
    if (next == track.begin()) return next->value_in;
    if (next == track.end()) return track.back().value_out;
    const Piece piece(*(next - 1), *next);
    const double s = (time - (next - 1)->time) / piece.length;
    return piece.from + s * (piece.a + s * (piece.square + s * piece.cube));
}

double slope_at(const Track& track, double time, bool after)
{
    const auto next = next_knot(track, time, after);
    if (next == track.begin() || next == track.end()) return 0; // it holds outside
    if (!after && next->time == time) return next->slope_in;
    if (after && (next - 1)->time == time) return (next - 1)->slope_out;
    const Piece piece(*(next - 1), *next);
    const double s = (time - (next - 1)->time) / piece.length;
    return (piece.a + s * (2 * piece.square + 3 * s * piece.cube)) / piece.length;
}

Track crop(const Track& track, double start, double end)
{
    if (!(end > start)) return {Knot{start, value_at(track, start), value_at(track, start), 0, 0, false}};
    const auto at = [&](double time) {
        const auto knot = next_knot(track, time, false);
        if (knot != track.end() && knot->time == time) return *knot;
        const double value = value_at(track, time);
        return Knot{time, value, value, slope_at(track, time, false), slope_at(track, time, true), false};
    };
    Track out = {at(start)};
    Knot& first = out.front();
    if (!first.late) first.value_in = first.value_out; // what jumps at the start has jumped
    first.slope_in = 0;
    for (const Knot& knot : track)
        if (knot.time > start && knot.time < end) out.push_back(knot);
    out.push_back(at(end));
    Knot& last = out.back();
    if (last.late) last.value_out = last.value_in; // what jumps behind the end doesn't
    last.late = false;
    last.slope_out = 0;
    return out;
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

namespace {

// Knot times of the tracks that move, each once, and the jumps there.
struct Event {
    double time = 0;
    bool early = false, late = false;
};

std::vector<Event> events(std::span<const Track> tracks)
{
    std::vector<Event> all;
    for (const Track& track : tracks)
        if (!is_constant(track))
            for (const Knot& knot : track)
                all.push_back({knot.time, knot.jumps() && !knot.late, knot.jumps() && knot.late});
    std::stable_sort(all.begin(), all.end(), [](const Event& a, const Event& b) { return a.time < b.time; });
    std::size_t kept = 0;
    for (std::size_t i = 0; i < all.size(); ++i) {
        if (kept > 0 && all[kept - 1].time == all[i].time) {
            all[kept - 1].early |= all[i].early;
            all[kept - 1].late |= all[i].late;
        } else {
            all[kept++] = all[i];
        }
    }
    all.resize(kept);
    return all;
}

} // namespace

std::vector<Moment> moments(std::span<const Track> tracks, double frame)
{
    std::vector<Moment> result;
    const std::vector<Event> knots = events(tracks);
    if (knots.empty()) return result;
    double number = frame > 0 ? std::floor(knots.front().time / frame) + 1 : 0;
    for (std::size_t i = 0; i < knots.size(); ++i) {
        const Event& knot = knots[i];
        // Frames between the knots. Those that all but hit one give way to it.
        for (; i > 0 && frame > 0 && number * frame < knot.time; ++number)
            if (number * frame > knots[i - 1].time + 3 * jump_length && number * frame < knot.time - 3 * jump_length)
                result.push_back({number * frame, number * frame, false});
        const bool early = knot.early && i > 0;
        if (early) {
            result.push_back({knot.time - 2 * jump_length, knot.time - 2 * jump_length, false});
            result.push_back({knot.time - jump_length, knot.time, true});
        }
        result.push_back({knot.time, knot.time, early});
        if (knot.late) {
            result.push_back({knot.time + jump_length, knot.time, true});
            result.push_back({knot.time + 2 * jump_length, knot.time + 2 * jump_length, true});
        }
    }
    return result;
}

Span span_of(std::span<const Track> tracks)
{
    Span span;
    for (const Track& track : tracks) {
        if (is_constant(track)) continue;
        span.first = span.knots == 0 ? track.front().time : std::min(span.first, track.front().time);
        span.last = span.knots == 0 ? track.back().time : std::max(span.last, track.back().time);
        span.knots += track.size();
    }
    return span;
}

} // namespace gltf
