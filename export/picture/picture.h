// Stills of glTF tables: what the file holds, drawn by rays on all cores, with no display and no graphics card.
#pragma once
#include <filesystem>

#include "export/gltf/file/tables.h"
#include "export/picture/base/request.h"

namespace picture {

struct Outcome {
    Size size;
    View view = View::automatic; // the one that was taken: never automatic
    enum class LampReason : uint8_t { none, asked_for, no_lights, too_dark } lamp = LampReason::none;
    std::size_t triangles = 0;
    bool stopped = false; // by progress; nothing was written
};

// Writes `out`, .png or .jpg by its ending, whole or not at all. Throws std::runtime_error with one clear line (UTF-8),
// std::bad_alloc. Memory doesn't grow with the picture's size beyond some 100 MB.
Outcome write_still(const gltf::Tables& tables, const std::filesystem::path& out, const Request& request);

// The size that a request without one gets.
Size natural_size(const gltf::Tables& tables);

// For a small picture that is there fast: `longest` pixels on the longer side, 2 by 2 samples, textures reduced,
// transparent where the file has no backdrop.
Request thumbnail(const gltf::Tables& tables, uint32_t longest);

} // namespace picture
