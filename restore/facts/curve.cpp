#include "restore/facts/curve.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace restore {

// A key, or a place in the span behind it.
struct Curve::Place {
    std::size_t key = 0;
    double into = 0; // 0 to 1 of the span; 0: the key itself
    bool linear = false;
    double weights[4] = {}; // of the key, its tangent, the next key, its tangent
};

bool Curve::sort()
{
    const auto in_order = [](const Key& a, const Key& b) { return a.frame < b.frame; };
    if (std::adjacent_find(keys.begin(), keys.end(), [&](const Key& a, const Key& b) { return !in_order(a, b); }) ==
        keys.end())
        return true;
    std::vector<std::size_t> order(keys.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::stable_sort(order.begin(), order.end(),
                     [&](std::size_t a, std::size_t b) { return in_order(keys[a], keys[b]); });
    std::vector<Key> sorted_keys;
    std::vector<double> sorted_values;
    for (std::size_t i = 0; i < order.size(); ++i) {
        if (i + 1 < order.size() && keys[order[i + 1]].frame == keys[order[i]].frame) continue;
        const std::span<const double> of_key = at_key(order[i]);
        sorted_keys.push_back(keys[order[i]]);
        sorted_values.insert(sorted_values.end(), of_key.begin(), of_key.end());
    }
    keys = std::move(sorted_keys);
    values = std::move(sorted_values);
    return false;
}

Tangents Curve::tangents(std::size_t i, std::size_t channel) const
{
    if (keys.size() < 2) return {};
    const Key& key = keys[i];
    const double t = 1 - static_cast<double>(key.tension), c = static_cast<double>(key.continuity),
                 b = static_cast<double>(key.bias);
    const auto value_of = [&](std::size_t of) { return values[of * channels + channel]; };
    if (i == 0 || i + 1 == keys.size()) {
        const double slope = t * (i == 0 ? value_of(1) - value_of(0) : value_of(i) - value_of(i - 1));
        return {slope, slope};
    }
    const double before = value_of(i) - value_of(i - 1), behind = value_of(i + 1) - value_of(i);
    const double in = (t * (1 - c) * (1 + b) * before + t * (1 + c) * (1 - b) * behind) / 2;
    const double out = (t * (1 + c) * (1 + b) * before + t * (1 - c) * (1 - b) * behind) / 2;
    // Spans of different lengths: the slope in frames is the same on both sides.
    const double both = keys[i + 1].frame - keys[i - 1].frame;
    return {in * 2 * (key.frame - keys[i - 1].frame) / both, out * 2 * (keys[i + 1].frame - key.frame) / both};
}

Curve::Place Curve::locate(double frame) const
{
    const double first = keys.front().frame, last = keys.back().frame, range = last - first;
    if (frame < first || frame > last) {
        if (end == EndBehaviour::stop) return {.key = frame < first ? 0 : keys.size() - 1};
        if (end == EndBehaviour::reset || !(range > 0) || !std::isfinite(frame)) return {.key = 0};
        double into = std::fmod(frame - first, range);
        if (into < 0) into += range;
        frame = first + into;
    }
    const auto behind =
        std::upper_bound(keys.begin(), keys.end(), frame, [](double at, const Key& key) { return at < key.frame; });
    if (behind == keys.begin()) return {.key = 0}; // not a number
    Place place{.key = static_cast<std::size_t>(behind - keys.begin()) - 1};
    if (behind == keys.end() || keys[place.key].frame == frame) return place;
    const double s = (frame - keys[place.key].frame) / (behind->frame - keys[place.key].frame);
    place.into = s;
    place.linear = behind->linear;
    const double s2 = s * s, s3 = s2 * s;
    place.weights[0] = place.linear ? 1 - s : 2 * s3 - 3 * s2 + 1;
    place.weights[1] = s3 - 2 * s2 + s;
    place.weights[2] = place.linear ? s : 3 * s2 - 2 * s3;
    place.weights[3] = s3 - s2;
    return place;
}

double Curve::value_at(const Place& place, std::size_t channel) const
{
    const double* const value = &values[place.key * channels + channel];
    if (place.into <= 0) return *value;
    const double straight = place.weights[0] * value[0] + place.weights[2] * value[channels];
    if (place.linear) return straight;
    return straight + place.weights[1] * tangents(place.key, channel).out +
           place.weights[3] * tangents(place.key + 1, channel).in;
}

void Curve::evaluate(double frame, std::span<double> out) const
{
    std::fill(out.begin(), out.end(), 0.0);
    if (keys.empty()) return;
    const Place place = locate(frame);
    for (std::size_t i = 0; i < std::min(channels, out.size()); ++i) out[i] = value_at(place, i);
}

double Curve::value(std::size_t channel, double frame) const
{
    return keys.empty() || channel >= channels ? 0 : value_at(locate(frame), channel);
}

} // namespace restore
