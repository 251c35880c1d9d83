// How a scene is to be written.
#pragma once
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace gltf {

struct Options {
    double scale = 1;                           // of lengths, applied to the data. Finite, above 0
    double light_scale = 1;                     // of light intensities
    uint32_t max_texture = 4096;                // longest side of an image in the file, pixels
    bool fine_rotations = false;                // rotations are never off by more than 0.05 degrees between two samples
    bool fit_depth = false;                     // the camera's depth range takes in what it sees, and no more
    bool backdrop_dome = false;                 // an unlit dome mesh that shows the backdrop
    std::optional<double> frame;                // a still of this frame instead of animation
    std::vector<std::string> image_directories; // where images are looked for, in order; the system's spelling
    std::string source_name;                    // the input's file name, UTF-8: asset.extras and the animation's name
    std::string generator = "lwimport";
    std::function<bool(std::size_t done, std::size_t total)> progress; // true: stop. May be empty
};

} // namespace gltf
