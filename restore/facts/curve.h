// Values over frames, as scene files have them: motions of nine channels, envelopes of one or three.
//
// Between keys run Kochanek-Bartels (TCB) splines: D. Kochanek and R. Bartels, Interpolating Splines with Local Tension,
// Continuity, and Bias Control, 1984. A key with the linear flag is reached from the key before it on a straight line,
// in all channels; the tangents of the neighbouring curved spans stay those of the spline.
#pragma once
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace restore {

struct Key {
    double frame = 0;
    float tension = 0, continuity = 0, bias = 0;
    bool linear = false;
};

// What a curve does before its first key and behind its last one.
enum class EndBehaviour : uint8_t {
    reset,  // the first key's values, on both sides
    stop,   // those of the nearest key
    repeat, // the keys' range again and again
};

// Slopes at a key in one channel, for the spans before and behind it: change of value over the whole of that span.
struct Tangents {
    double in = 0, out = 0;
};

struct Curve {
    std::size_t channels = 1;
    std::vector<Key> keys;      // by frame, no two at one, once sort() has been called
    std::vector<double> values; // `channels` for each key, key after key
    EndBehaviour end = EndBehaviour::reset;

    std::span<const double> at_key(std::size_t key) const { return {values.data() + key * channels, channels}; }

    // Brings keys into the order of their frames; of several at one frame the last in the file stays. False when there
    // was something to do. The readers of this folder have called it.
    bool sort();

    // Writes `channels` values at any frame, also between whole ones; zeros without a key.
    void evaluate(double frame, std::span<double> out) const;
    double value(std::size_t channel, double frame) const; // one of them

    Tangents tangents(std::size_t key, std::size_t channel) const;

private:
    struct Place;
    Place locate(double frame) const;
    double value_at(const Place& place, std::size_t channel) const;
};

} // namespace restore
