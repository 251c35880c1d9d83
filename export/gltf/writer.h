// Scene -> glTF 2.0. Reads the toolkit's scene, knows nothing of the formats it came from.
#pragma once
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "lib/toolkit/scene/scene.h"

namespace gltf {

// One line for the user: what, where, and how often. Latin-1 names are already turned into UTF-8.
struct Note {
    enum class Level : uint8_t { info, warning, error } level = Level::warning;
    std::string text;
};

// An image that was looked for and not found, or found and not readable.
struct MissingImage {
    std::string name;               // as the scene names it
    std::string surface;            // the first that asks for it; empty: the backdrop
    std::vector<std::string> tried; // the places, in order; with `unreadable`, the one file
    std::string unreadable;         // why the file that was found can't be read; empty: none was found
};

struct Options {
    double scale = 1;                           // of lengths, applied to the data. Finite, above 0
    double light_scale = 1;                     // of light intensities
    uint32_t max_texture = 4096;                // longest side of an image in the file, pixels
    bool backdrop_dome = false;                 // an unlit dome mesh that shows the backdrop
    std::optional<double> frame;                // a still of this frame instead of animation
    std::vector<std::string> image_directories; // where images are looked for, in order; the system's spelling
    std::string source_name;                    // the input's file name, UTF-8: asset.extras and the animation's name
    std::string generator = "lwimport";
    std::function<bool(std::size_t done, std::size_t total)> progress; // true: stop. May be empty
};

struct Report {
    std::vector<Note> notes; // repeated ones counted and told once
    std::vector<MissingImage> missing_images;
    std::size_t images_found = 0;
    std::size_t nodes = 0, meshes = 0, triangles = 0, materials = 0, images = 0, animations = 0;
    bool stopped = false; // by progress; nothing was written
};

// Writes `out`, whose ending decides: .glb (everything inside), .gltf (with a .bin beside it, and image files), .json
// (the scene as the toolkit holds it, complete). Each file is written to a temporary one beside its target and
// renamed, so that a failure leaves what was there before. Throws std::runtime_error with one clear line (UTF-8) when
// something can't be written or the scene has no place in the format.
Report write_scene(const tv::Scene& scene, const std::filesystem::path& out, const Options& options);

// The same as one block of bytes, for standard output: format "glb", "gltf" (buffers and images as data URIs) or "json".
Report write_scene(const tv::Scene& scene, const std::string& format, const Options& options,
                   std::vector<unsigned char>& bytes);

// The .json form: every field of scene.h, in the order in which it stands there. UTF-8 text.
std::string dump_scene(const tv::Scene& scene);

} // namespace gltf
