#include "lib/toolkit/animation/animation.h"

#include <algorithm>
#include <cmath>
#include <span>

namespace tv {

namespace {

bool in_order(std::span<const Key> keys)
{
    return std::adjacent_find(keys.begin(), keys.end(), [](const Key& a, const Key& b) { return a.time >= b.time; }) ==
           keys.end();
}

double value_of(const Key& key)
{
    return static_cast<double>(key.value);
}
double length(const Key& from, const Key& to)
{
    return static_cast<double>(to.time) - static_cast<double>(from.time);
}

// Inside the keys' range; at least one key.
double inside(const std::vector<Key>& keys, double time)
{
    const auto behind = std::upper_bound(keys.begin(), keys.end(), time,
                                         [](double at, const Key& key) { return at < static_cast<double>(key.time); });
    if (behind == keys.begin()) return value_of(keys.front());
    if (behind == keys.end()) return value_of(keys.back());
    const std::size_t i = static_cast<std::size_t>(behind - keys.begin()) - 1;
    const double s = (time - static_cast<double>(keys[i].time)) / length(keys[i], keys[i + 1]);
    if (keys[i + 1].linear) return value_of(keys[i]) + s * (value_of(keys[i + 1]) - value_of(keys[i]));
    const double s2 = s * s, s3 = s2 * s;
    return (2 * s3 - 3 * s2 + 1) * value_of(keys[i]) + (s3 - 2 * s2 + s) * tangents(keys, i).out +
           (3 * s2 - 2 * s3) * value_of(keys[i + 1]) + (s3 - s2) * tangents(keys, i + 1).in;
}

double outside(const std::vector<Key>& keys, Extrapolation how, double time)
{
    const Key &first = keys.front(), &last = keys.back();
    switch (how) {
    case Extrapolation::constant: return value_of(time < static_cast<double>(first.time) ? first : last);
    case Extrapolation::cycle: {
        const double range = length(first, last), start = static_cast<double>(first.time);
        if (!(range > 0) || !std::isfinite(time)) break;
        double into = std::fmod(time - start, range);
        if (into < 0) into += range;
        return inside(keys, start + into);
    }
    case Extrapolation::reset: break;
    }
    return value_of(first);
}

// The tangents follow the values' differences, so a channel of equal values never leaves them.
void mark_constant(Channel& channel)
{
    channel.constant =
        !channel.keys.empty() && std::all_of(channel.keys.begin(), channel.keys.end(),
                                             [&](const Key& key) { return key.value == channel.keys.front().value; });
}

} // namespace

std::vector<Key> sorted_keys(const Channel& channel)
{
    std::vector<Key> keys = channel.keys;
    if (in_order(keys)) return keys;
    std::stable_sort(keys.begin(), keys.end(), [](const Key& a, const Key& b) { return a.time < b.time; });
    // Of equal times the last one stays: it stands at the end of its group.
    std::size_t kept = 0;
    for (std::size_t i = 0; i < keys.size(); ++i)
        if (i + 1 == keys.size() || keys[i + 1].time != keys[i].time) keys[kept++] = keys[i];
    keys.resize(kept);
    return keys;
}

Tangents tangents(const std::vector<Key>& keys, std::size_t i)
{
    const Key& key = keys[i];
    const double t = static_cast<double>(key.tension), c = static_cast<double>(key.continuity),
                 b = static_cast<double>(key.bias);
    if (keys.size() < 2) return {};
    if (i == 0 || i + 1 == keys.size()) {
        const Key &from = i == 0 ? key : keys[i - 1], &to = i == 0 ? keys[1] : key;
        const double slope = (1 - t) * (value_of(to) - value_of(from));
        return {slope, slope};
    }
    const double before = value_of(key) - value_of(keys[i - 1]), behind = value_of(keys[i + 1]) - value_of(key);
    const double both = length(keys[i - 1], keys[i + 1]);
    const double in = ((1 - t) * (1 - c) * (1 + b) * before + (1 - t) * (1 + c) * (1 - b) * behind) / 2;
    const double out = ((1 - t) * (1 + c) * (1 + b) * before + (1 - t) * (1 - c) * (1 - b) * behind) / 2;
    return {in * 2 * length(keys[i - 1], key) / both, out * 2 * length(key, keys[i + 1]) / both};
}

double evaluate(const std::vector<Key>& keys, Extrapolation before, Extrapolation after, double time, double fallback)
{
    if (keys.empty()) return fallback;
    if (time < static_cast<double>(keys.front().time)) return outside(keys, before, time);
    if (time > static_cast<double>(keys.back().time)) return outside(keys, after, time);
    return inside(keys, time);
}

double evaluate(const Channel& channel, double time, double fallback)
{
    return evaluate(in_order(channel.keys) ? channel.keys : sorted_keys(channel), channel.before, channel.after, time,
                    fallback);
}

void mark_constant_channels(InstanceChannels& channels)
{
    for (std::array<Channel, 3>* axes : {&channels.position, &channels.scale, &channels.rotation})
        for (Channel& axis : *axes) mark_constant(axis);
}

void mark_constant_channels(CameraChannels& channels)
{
    for (std::array<Channel, 3>* axes : {&channels.look_from, &channels.look_at})
        for (Channel& axis : *axes) mark_constant(axis);
    mark_constant(channels.roll);
}

} // namespace tv
