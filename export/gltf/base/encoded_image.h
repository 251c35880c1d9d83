// An image as it goes into the file. Shared: the same file, treated the same way, is one of these.
#pragma once
#include <cstdint>
#include <string>
#include <vector>

namespace gltf {

struct EncodedImage {
    std::string name; // UTF-8, for people
    std::string mime; // "image/png" or "image/jpeg"
    std::vector<unsigned char> bytes;
    uint32_t width = 0, height = 0;
    bool has_alpha = false; // a pixel below 255
};

} // namespace gltf
