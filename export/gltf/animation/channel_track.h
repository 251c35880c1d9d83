// A channel with its extrapolation filled in: cubic Hermite pieces between knots, exact everywhere.
#pragma once
#include <cstddef>
#include <span>
#include <vector>

#include "lib/toolkit/scene/scene.h"

namespace gltf {

// Times in 1/4800 s, slopes as change of value per 1/4800 s. Where value_in and value_out differ the channel jumps.
struct Knot {
    double time = 0;
    double value_in = 0, value_out = 0; // what the piece before ends in, and the piece after starts from
    double slope_in = 0, slope_out = 0;
    bool late = false; // at `time` itself a jump hasn't happened yet
    bool jumps() const { return value_in != value_out; }
};

// At least one knot, times rising. Before the first and after the last one the value holds.
using Track = std::vector<Knot>;

// Repeating a short range over a long time line could make any number of knots: at most `knots` are made beyond the
// channel's own keys.
struct TrackLimits {
    double start = 0, end = 0; // the range that extrapolation fills
    std::size_t knots = 100000;
};

struct TrackFaults {
    std::size_t cut = 0;        // tracks that needed more knots than allowed
    std::size_t not_finite = 0; // keys left out, or their tangents taken as flat
};

// A channel without usable keys gives one knot of the value `fallback`.
Track make_track(const tv::Channel& channel, double fallback, const TrackLimits& limits, TrackFaults& faults);

double value_at(const Track& track, double time);

// The slope of the piece that ends at `time`, or with `after` of the one that starts there.
double slope_at(const Track& track, double time, bool after);

// The same between two times, with a knot at each of them; a single knot where end isn't above start.
Track crop(const Track& track, double start, double end);

// One value throughout, however many knots.
bool is_constant(const Track& track);

// A moment at which a file that gives these tracks together needs a key.
struct Moment {
    double time = 0;
    double of = 0;     // the time whose values stand there: `time`, but beside a jump
    bool flat = false; // the piece that ends here is part of a jump, and has no slopes
};
// A jump takes this long, and keeps as far away from its moment: readers' times are rounded, and one that asks for the
// moment itself must not get something from half-way up.
inline constexpr double jump_length = 0.1; // 1/4800 s

// All knots of tracks that aren't constant, and every multiple of `frame` between the first and the last of them; 0: no
// such multiples. Rising strictly.
std::vector<Moment> moments(std::span<const Track> tracks, double frame);

// Times of the first and the last knot that isn't of a constant track, and how many there are; no knots: all constant.
struct Span {
    double first = 0, last = 0;
    std::size_t knots = 0;
};
Span span_of(std::span<const Track> tracks);

} // namespace gltf
