// Tables -> the JSON part of a glTF file.
#pragma once
#include <string>
#include <vector>

#include "export/gltf/file/tables.h"

namespace gltf {

// Where the data lies. A .glb file's is its own second chunk (no uri) and holds the images.
struct JsonTarget {
    std::string buffer_uri;              // empty: the GLB chunk
    std::vector<std::string> image_uris; // one for each image; empty: they lie in the buffer
    bool lines = false;                  // a line for each thing, for people and diffs; else as short as can be
};

std::string gltf_json(const Tables& tables, const JsonTarget& target);

} // namespace gltf
