#include "restore/after/channels.h"

#include <algorithm>
#include <cmath>

#include "lib/toolkit/units.h"

namespace restore {

namespace {

tv::Extrapolation extrapolation(EndBehaviour end)
{
    switch (end) {
    case EndBehaviour::stop: return tv::Extrapolation::constant;
    case EndBehaviour::repeat: return tv::Extrapolation::cycle;
    case EndBehaviour::reset: break;
    }
    return tv::Extrapolation::reset;
}

// What each channel of a motion is multiplied by: the file's Z points away from the viewer, which turns the sense of
// heading and pitch; the toolkit's angles are about X, Y and Z.
struct Axis {
    std::size_t from; // channel of the motion
    double factor;
};
constexpr double radians = 1 / tv::degrees_per_radian;
constexpr Axis position_axes[3] = {{channel::x, 1}, {channel::y, 1}, {channel::z, -1}};
constexpr Axis rotation_axes[3] = {{channel::pitch, -radians}, {channel::heading, -radians}, {channel::bank, radians}};

} // namespace

int32_t FrameTimes::time(double frame) const
{
    constexpr double limit = 2147483647;
    const double units = static_cast<double>(static_cast<float>(frame * tv::time_units_per_second));
    return static_cast<int32_t>(std::clamp(std::trunc(units / rate_), -limit, limit));
}

tv::Channel make_channel(const Curve& curve, std::size_t channel, double factor, const FrameTimes& times, bool linear)
{
    tv::Channel out;
    out.before = out.after = extrapolation(curve.end);
    out.keys.reserve(curve.keys.size());
    for (std::size_t i = 0; i < curve.keys.size(); ++i) {
        const Key& key = curve.keys[i];
        tv::Key made;
        made.time = times.time(key.frame);
        made.value = static_cast<float>(curve.at_key(i)[channel] * factor);
        made.tension = key.tension;
        made.continuity = key.continuity;
        made.bias = key.bias;
        made.linear = linear && key.linear;
        out.keys.push_back(made);
    }
    return out;
}

tv::Curve make_curve(const Number& number, double rest, const FrameTimes& times, bool moving, bool linear)
{
    tv::Curve out;
    out.rest = rest;
    if (moving && number.envelope && number.envelope->keys.size() > 1)
        out.channel = make_channel(*number.envelope, 0, 1, times, linear);
    return out;
}

tv::Rig make_rig(const Mover& mover, const FrameTimes& times, const RigSettings& settings)
{
    tv::Rig rig;
    const Curve& motion = mover.motion;
    for (std::size_t i = 0; i < 3; ++i) {
        if (mover.pivot) rig.pivot[i] = static_cast<float>((*mover.pivot)[i] * position_axes[i].factor);
        if (motion.keys.empty()) continue;
        const auto first = motion.at_key(0);
        rig.position[i] = static_cast<float>(first[position_axes[i].from] * position_axes[i].factor);
        rig.rotation[i] = static_cast<float>(first[rotation_axes[i].from] * rotation_axes[i].factor);
        if (!settings.moving || motion.keys.size() < 2) continue;
        rig.channels.position[i] =
            make_channel(motion, position_axes[i].from, position_axes[i].factor, times, settings.linear);
        rig.channels.rotation[i] =
            make_channel(motion, rotation_axes[i].from, rotation_axes[i].factor, times, settings.linear);
    }
    return rig;
}

std::size_t mark_linear(tv::InstanceChannels& channels, const Curve& motion, const FrameTimes& times)
{
    std::vector<int32_t> straight; // times of the keys so reached, rising
    for (std::size_t i = 1; i < motion.keys.size(); ++i)
        if (motion.keys[i].linear) straight.push_back(times.time(motion.keys[i].frame));
    if (straight.empty()) return 0;
    for (auto* const set : {&channels.position, &channels.scale, &channels.rotation})
        for (tv::Channel& channel : *set)
            for (tv::Key& key : channel.keys)
                key.linear = std::binary_search(straight.begin(), straight.end(), key.time);
    return straight.size();
}

} // namespace restore
