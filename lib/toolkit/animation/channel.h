// Animated numbers as the scene holds them: keys, and what happens before the first and after the last. Times in 1/4800 s.
#pragma once
#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "lib/toolkit/kinds.h"

namespace tv {

enum class Extrapolation : uint8_t { reset, constant, cycle };

struct Key {
    int32_t time = 0; // 1/4800 s
    float value = 0, tension = 0, continuity = 0, bias = 0, ease_from = 0, ease_to = 0;
    std::array<float, 4> quaternion{}; // only where "quatvalue" was given
    uint32_t id = 0;                   // 1, 2, 3 ... in the order of making in the whole scene
    bool linear = false;               // restored: reached from the key before it on a straight line
};

// One animated number. `keys` stand in the order of making; sorted_keys() of animation.h is what a reader wants.
struct Channel {
    std::vector<Key> keys;
    Extrapolation before = Extrapolation::reset, after = Extrapolation::reset;
    bool constant = false; // found by an Optimize call: all keys hold one value, and no key need be written
    Id owner = no_id;      // instance or camera
    Kind owner_kind = Kind::none;
    uint8_t slot = 0; // of the tables of Import_IO_Get_Default…AnimationChannelPtrs
};

// Slots of an instance's table: 6 to 8 guards, 10 to 12 position, 13 to 15 scale, 16 to 18 Euler angles.
struct InstanceChannels {
    std::array<Channel, 3> position, scale, rotation; // X, Y, Z each
    int32_t euler_order = 8;                          // 8: Z first, then X, then Y
    uint64_t number = 0;                              // in their handles; the toolkit's own
};

// Slots of a camera's table: 8 to 10 look-from, 11 to 13 look-at, 14 roll in degrees.
struct CameraChannels {
    std::array<Channel, 3> look_from, look_at;
    Channel roll;
    uint64_t number = 0; // in their handles; the toolkit's own
};

} // namespace tv
