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

class Animator {
public:
    // With Options::frame nothing moves: every motion is a placing at that frame.
    Animator(const tv::Scene& scene, const Options& options, Tables& tables, Report& report);

    double start_time() const { return start_time_; } // 1/4800 s; where the nodes stand before anything moves
    double frame() const;                             // from one frame to the next, 1/4800 s

    // Made once an instance, however often it is placed. The instance is one that tv::is_animated.
    const Motion& motion(tv::Id instance);

    std::array<Track, 3> tracks(const std::array<tv::Channel, 3>& channels, double fallback);
    Track track(const tv::Channel& channel, double fallback);

    // A CUBICSPLINE sampler of three tracks, values times `factor`; `none` where all are constant, or in a still.
    uint32_t spline_sampler(const std::array<Track, 3>& tracks, double factor);

    // A LINEAR sampler of a rotation at every frame and every knot of `tracks`; `rotation` is asked at rising times.
    // `none` where it is constant, or in a still.
    uint32_t rotation_sampler(std::span<const Track> tracks, const std::function<glm::dquat(double time)>& rotation);

    void add_channel(AnimationChannel::Path path, uint32_t sampler, uint32_t node);

    // Behind the last channel: notes on what was cut, and the time line into the extras.
    void finish();

private:
    std::vector<float> seconds(const std::vector<Moment>& moments) const;
    uint32_t input(const std::vector<float>& times);
    double frame_step(const Span& span);

    const tv::Scene& scene_;
    Tables& tables_;
    Report& report_;
    double scale_, start_time_;
    bool still_;
    double first_time_ = 0; // what becomes 0 s: below 0 where keys or the time line start there
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
