// A channel with its extrapolation filled in: cubic Hermite pieces between knots, exact everywhere.
#pragma once
#include <cstddef>
#include <span>
#include <vector>

#include "lib/toolkit/scene.h"

namespace gltf {

// Times in 1/4800 s, slopes as change of value per 1/4800 s. Where value_in and value_out differ the channel jumps.
struct Knot {
    double time = 0;
    double value_in = 0, value_out = 0; // what the piece before ends in, and the piece behind starts from
    double slope_in = 0, slope_out = 0;
    bool jumps() const { return value_in != value_out; }
};

// At least one knot, times rising. Before the first and behind the last one the value holds.
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

struct Sample {
    double value = 0, slope = 0;
};
// At a jump `behind` chooses the side.
Sample sample(const Track& track, double time, bool behind);

// One value throughout, however many knots.
bool is_constant(const Track& track);

// The times of all knots, rising, each once.
std::vector<double> knot_times(std::span<const Track> tracks);

// True where one of the tracks jumps at `time`.
bool jumps_at(std::span<const Track> tracks, double time);

} // namespace gltf
