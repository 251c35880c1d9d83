// What became of a scene, for the user.
#pragma once
#include <cstddef>
#include <string>
#include <vector>

#include "lib/messages/message.h"

namespace gltf {

// An image that was looked for and not found, or found and not readable.
struct MissingImage {
    std::string name;               // as the scene names it
    std::string surface;            // the first that asks for it; empty: the backdrop
    std::vector<std::string> tried; // the places, in order; with `unreadable`, the one file
    std::string unreadable;         // why the file that was found can't be read; empty: none was found
};

struct Report {
    std::vector<messages::Message> notes; // about no file; repeated ones counted and told once
    std::vector<MissingImage> missing_images;
    std::size_t images_found = 0;
    std::size_t nodes = 0, meshes = 0, triangles = 0, materials = 0, images = 0, animations = 0;
    bool stopped = false; // by progress; nothing was written
};

} // namespace gltf
