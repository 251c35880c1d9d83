// Channels over time: Kochanek-Bartels (TCB) splines with Hermite pieces between keys, times in 1/4800 s.
#pragma once
#include <cstdint>
#include <vector>

#include "lib/toolkit/animation/channel.h"
#include "lib/toolkit/vc4_tv.h"

namespace tv {

// Keys by time, each time once: of two keys at one time the one made last counts.
TV_API std::vector<Key> sorted_keys(const Channel& channel);

// A key's tangents, as change of value over the neighbouring piece (not over a unit of time): `in` for the piece that
// ends at the key, `out` for the one that starts there. Divide by the piece's length for value per unit of time.
struct Tangents {
    double in = 0, out = 0;
};
// keys: as sorted_keys gives them; i < keys.size(). D. Kochanek and R. Bartels, Interpolating Splines with Local
// Tension, Continuity and Bias Control, 1984, with the correction for unequal spacing of the keys.
TV_API Tangents tangents(const std::vector<Key>& keys, std::size_t i);

// The value at `time`. `keys` as sorted_keys gives them; with none the result is `fallback`. Before the first and
// behind the last key: reset gives the first key's value, constant the nearest key's, cycle repeats the range.
TV_API double evaluate(const std::vector<Key>& keys, Extrapolation before, Extrapolation after, double time,
                       double fallback);

// The same for a channel, sorting only where its keys aren't in order.
TV_API double evaluate(const Channel& channel, double time, double fallback);

// Marks the channels that hold one value throughout (equal keys and no tangent that leaves it).
TV_API void mark_constant_channels(InstanceChannels& channels);
TV_API void mark_constant_channels(CameraChannels& channels);

} // namespace tv
