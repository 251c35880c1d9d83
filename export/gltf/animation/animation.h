// Channels -> glTF samplers: positions and scales as the splines they are, rotations sampled.
#pragma once
#include <functional>
#include <map>
#include <span>
#include <unordered_map>
#include <vector>

#include "export/gltf/animation/channel_track.h"
#include "export/gltf/base/options.h"
#include "export/gltf/base/report.h"
#include "export/gltf/base/transform.h"
#include "export/gltf/file/tables.h"
#include "lib/toolkit/scene/scene.h"

namespace gltf {

// How an instance with channels is placed, and what moves it. A path without a sampler stays where `start` has it.
struct Motion {
    Placing start; // lengths in the file's units
    uint32_t translation = none, rotation = none, scale = none;
};

// Of Euler angles about X, Y and Z.
glm::dquat rotation_at(std::span<const Track, 3> angles, double time);

// A rotation over time. `at` gives it at any time, unless `rising` is set: then at rising times alone.
struct Turning {
    std::span<const Track> tracks; // what it depends on: samples are taken at their knots too
    std::function<glm::dquat(double time)> at;
    std::span<const Track> angles = {}; // its Euler angles, radians, where it is made of some
    bool rising = false;
};

class Animator {
public:
    // With Options::frame nothing moves: every motion is a placing at that frame.
    Animator(const tv::Scene& scene, const Options& options, Tables& tables, Report& report);

    double start_time() const { return start_time_; } // 1/4800 s; where the nodes stand before anything moves
    bool still() const { return still_; }
    double frame() const; // from one frame to the next, 1/4800 s

    // Made once for each instance, however often it is placed. The instance is one that tv::is_animated.
    const Motion& motion(tv::Id instance);

    const Span& clip() const { return clip_; } // first and last time, 1/4800 s

    std::array<Track, 3> tracks(const std::array<tv::Channel, 3>& channels, double fallback);
    Track track(const tv::Channel& channel, double fallback);

    // A CUBICSPLINE sampler of three tracks, values times `factor`; `none` where all are constant, or in a still.
    uint32_t spline_sampler(const std::array<Track, 3>& tracks, double factor);

    // A LINEAR sampler of a rotation at every frame and every knot, and with Options::fine_rotations between them where
    // that isn't close enough. `none` where it is constant, or in a still.
    uint32_t rotation_sampler(const Turning& turning);

    // A LINEAR sampler of `parts` numbers that depend on the tracks, at every frame and every knot, and between them where
    // a straight line is off by more than a thousandth of their range. `none` where they are constant, or in a still.
    uint32_t value_sampler(std::span<const Track> tracks, Element parts,
                           const std::function<void(double time, std::span<double> out)>& values);

    // A STEP sampler of a yes or no, 1 or 0 in each part, asked at every frame and every knot and half-way between.
    uint32_t step_sampler(std::span<const Track> tracks, Element parts, const std::function<bool(double time)>& value);

    void add_channel(AnimationChannel::Path path, uint32_t sampler, uint32_t node);
    // What no node has: the JSON pointer of a property.
    void add_pointer(std::string pointer, uint32_t sampler);

    // After the last channel: notes on what was cut, and the time line into the extras.
    void finish();

private:
    std::vector<float> seconds(const std::vector<Moment>& moments) const;
    uint32_t input(const std::vector<float>& times);
    uint32_t add_sampler(const std::vector<float>& times, Element element, const std::vector<float>& values);
    double frame_step(const Span& span);
    void refine(std::vector<Moment>& moments, const std::function<bool(double from, double to)>& too_far);

    const tv::Scene& scene_;
    Tables& tables_;
    Report& report_;
    double scale_, start_time_;
    bool still_;
    double first_time_ = 0; // what becomes 0 s: below 0 where keys or the time line start there
    double frame_rate_;     // frames a second
    bool fine_rotations_;
    Span clip_;
    TrackLimits limits_;
    TrackFaults faults_;
    std::size_t coarse_ = 0; // rotations sampled at less than the frame rate
    std::size_t budget_ = 0; // keys that the whole file may still get beyond the scene's own
    std::unordered_map<tv::Id, Motion> motions_;
    std::map<std::vector<float>, uint32_t> inputs_; // channels that share their key times share the accessor
};

// Which of the samples a reader needs to find all others within `tolerance` (radians) on the shortest arc between the
// kept ones. The first and the last are kept. Linear time. `times` rise strictly.
std::vector<std::size_t> needed_rotations(std::span<const float> times, std::span<const glm::dquat> rotations,
                                          double tolerance);

} // namespace gltf
