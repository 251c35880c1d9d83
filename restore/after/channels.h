// Curves of a scene file as channels of the toolkit.
#pragma once
#include <array>
#include <cstddef>
#include <cstdint>

#include "lib/toolkit/scene/scene.h"
#include "restore/facts/curve.h"
#include "restore/facts/scene_facts.h"

namespace restore {

// Frames as the toolkit's times, rounded as the importer rounds them, so that keys of both stand at one moment.
class FrameTimes {
public:
    explicit FrameTimes(double frames_per_second) : rate_(frames_per_second > 0 ? frames_per_second : 30) {}
    int32_t time(double frame) const; // 1/4800 s, within 32 bits
    double rate() const { return rate_; }

private:
    double rate_; // frames a second
};

// One channel of a curve, each value multiplied by `factor`. Straight spans where `linear` says that they count.
tv::Channel make_channel(const Curve& curve, std::size_t channel, double factor, const FrameTimes& times, bool linear);

// The number as a curve: without an envelope, or where `moving` says no, its `rest` alone.
tv::Curve make_curve(const Number& number, double rest, const FrameTimes& times, bool moving, bool linear);

// A motion's place and turn as a light or camera has them; the file's Z points the other way.
struct RigSettings {
    bool moving = true; // else as at the first key
    bool linear = true; // straight spans count
};
tv::Rig make_rig(const Mover& mover, const FrameTimes& times, const RigSettings& settings);

// Marks the keys of an instance's channels that are reached on a straight line. Returns how many spans that makes.
std::size_t mark_linear(tv::InstanceChannels& channels, const Curve& motion, const FrameTimes& times);

} // namespace restore
