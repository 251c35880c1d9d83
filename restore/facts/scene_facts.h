// What a scene file says, as it says it: file coordinates (left-handed, Y up), degrees, frames, colours from 0 to 255.
// Names and paths are Latin-1. Item numbers count objects and nulls in file order from 1; 0 is none. Nothing here has
// been checked against anything else: numbers of items may lie out of range, parents may go in circles.
#pragma once
#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "restore/facts/curve.h"
#include "restore/facts/oddities.h"

namespace restore {

// Bytes of the file, for whoever writes a changed copy of it.
struct Span {
    uint64_t begin = 0, end = 0;
};

// A number that may change over the frames.
struct Number {
    double value = 0;                      // where there is no envelope
    std::shared_ptr<const Curve> envelope; // one channel; null for a number that doesn't change
    bool given = false; // the file says it; else `value` is what the program of the time started with

    double at(double frame) const { return envelope ? envelope->value(0, frame) : value; }
};

struct Colour {
    std::array<double, 3> value{};         // red, green, blue, 0 to 255 in a sound file
    std::shared_ptr<const Curve> envelope; // three channels
    bool given = false;
    Span operand; // of an envelope: from its word up to the end of its last number

    std::array<double, 3> at(double frame) const
    {
        std::array<double, 3> out = value;
        if (envelope) envelope->evaluate(frame, out);
        return out;
    }
};

// ParentObject or TargetObject.
struct Link {
    int32_t item = 0;
    uint64_t line = 0; // 0: not in the file
    Span words;        // keyword and number
};

// Channels of a motion.
namespace channel {
enum : std::size_t { x, y, z, heading, pitch, bank, scale_x, scale_y, scale_z, count };
}

// What objects, lights and the camera have in common.
struct Mover {
    std::string name;  // as the file has it, blanks inside kept; empty for an object, which has its path
    Span name_operand; // may be empty
    uint64_t line = 0; // of the keyword that begins it, from 1; 0: the file has none
    Curve motion{.channels = channel::count, .keys = {}, .values = {}}; // no key: at rest at the origin
    std::optional<std::array<double, 3>> pivot;
    std::vector<Span> pivot_words; // keyword and numbers, each time
    std::vector<Link> parents;     // each time the file says it; the last one counts
    Link target;

    int32_t parent() const { return parents.empty() ? 0 : parents.back().item; }
};

struct ObjectItem : Mover {
    bool is_null = false;
    std::string stored; // path of the object file, as it stands; empty for a null
    Span keyword;       // LoadObject or AddNullObject
    Number dissolve;    // 0 whole, 1 gone
    int32_t morph_target = 0;
    Number morph_amount;        // 0 to 1
    int32_t shadow_options = 7; // 1 casts on itself, 2 casts, 4 receives
    uint32_t bones = 0;
    bool unseen_by_camera = false, unseen_by_rays = false;
    bool displaced = false, clip_mapped = false, aligned_to_path = false;
};

enum class LightType : int32_t { distant = 0, point = 1, spot = 2, linear = 3, area = 4 };

struct LightItem : Mover {
    Colour colour{.value = {255, 255, 255}, .envelope = {}, .operand = {}};
    Number intensity{.value = 1, .envelope = {}};
    Number falloff;                                 // strength lost per unit of length; 0 none
    Number range;                                   // units at which nothing is left; 0 none
    Number cone_angle{.value = 30, .envelope = {}}; // of a spot: half the cone, degrees
    Number edge_angle{.value = 5, .envelope = {}};  // width of its soft edge, degrees
    int32_t type = 0;                               // LightType, or what no program of the time wrote
    bool lens_flare = false;
    Number flare_intensity;
    int32_t shadow_type = 0;     // ShadowCasting: 0 off, 1 ray traced, 2 shadow map
    int32_t shadow_map_size = 0; // pixels
};

struct CameraItem : Mover {
    Number zoom{.value = 3.2, .envelope = {}};         // half the picture's height is 1 / zoom at the distance 1
    std::optional<std::array<int32_t, 2>> custom_size; // pixels
    bool motion_blur = false, depth_of_field = false;
};

struct Backdrop {
    bool solid = true;
    Colour colour, zenith, sky, ground, nadir;
};

struct Fog {
    int32_t type = 0;         // 0 off
    Number nearest, farthest; // distances, units
    Number least, most;       // amounts, 0 to 1
    Colour colour;
};

// A picture that the scene itself names.
struct SceneImage {
    std::string stored;
    uint64_t line = 0;
    Span operand;
    bool is_backdrop = false; // BGImage; the others show in front, hide, or lie on displacements and clip maps
};

struct SceneFacts {
    bool is_scene = false;    // begins with LWSC
    int32_t version = 0;      // the number on the second line
    bool odd_motions = false; // some motion doesn't begin with nine channels and a key count

    double first_frame = 1, last_frame = 1, frame_step = 1;
    double frames_per_second = 30;

    std::vector<ObjectItem> objects;
    std::vector<LightItem> lights;
    CameraItem camera;
    Colour ambient_colour{.value = {255, 255, 255}, .envelope = {}, .operand = {}};
    Number ambient_intensity;
    Backdrop backdrop;
    Fog fog;
    std::vector<SceneImage> images;
    Oddities oddities;
    uint64_t bytes = 0; // of the file

    // Written by a later program, whose motions have another layout.
    bool is_later() const { return version >= 3 || (version == 2 && odd_motions); }
};

} // namespace restore
