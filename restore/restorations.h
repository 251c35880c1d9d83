// The restorations by name: which are wanted, and which acted how often.
#pragma once
#include <array>
#include <bitset>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

namespace restore {

enum class Restoration : uint8_t {
    // Ahead of the import: what the plug-in is given.
    right_file,
    later_sub_chunks,
    own_parents,
    any_envelopes,
    whole_names,
    unreadable_objects,
    later_scenes,
    // After it: what the toolkit's scene gets back.
    time_line,
    light_parents,
    light_motions,
    targets,
    camera_angles,
    linear_keys,
    fine_rotations,
    light_envelopes,
    dark_lights,
    zoom,
    ambient,
    dissolves,
    unseen,
    double_sided,
    light_range,
    area_lights,
    morphs,
    depth_range,
};
inline constexpr std::size_t restoration_count = static_cast<std::size_t>(Restoration::depth_range) + 1;

// "light-parents": for the command line, messages and reports.
std::string_view name_of(Restoration restoration);
std::optional<Restoration> restoration_of(std::string_view name);

// Which are wanted: all of them, until one is turned off.
class Wanted {
public:
    bool operator[](Restoration restoration) const { return !off_[static_cast<std::size_t>(restoration)]; }
    void turn_off(Restoration restoration) { off_.set(static_cast<std::size_t>(restoration)); }
    void turn_all_off() { off_.set(); }
    bool none() const { return off_.all(); }

private:
    std::bitset<restoration_count> off_;
};

// How often each acted.
class Acted {
public:
    void add(Restoration restoration, std::size_t times = 1) { times_[static_cast<std::size_t>(restoration)] += times; }
    std::size_t operator[](Restoration restoration) const { return times_[static_cast<std::size_t>(restoration)]; }

private:
    std::array<std::size_t, restoration_count> times_{};
};

} // namespace restore
