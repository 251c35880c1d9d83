// PNG and JPEG out of the tables' buffer.
#pragma once
#include <cstdint>
#include <span>
#include <vector>

#include "export/gltf/file/tables.h"

namespace picture {

// Rows from the top, 4 bytes a pixel (red, green, blue, alpha; not multiplied), without gaps.
struct Image {
    uint32_t width = 0, height = 0;
    std::vector<unsigned char> rgba; // empty: the image couldn't be read
    bool alpha = false;              // a pixel below 255
};

// Never fails but for want of memory: an image that can't be read is empty. A JPEG may come back at 1/2, 1/4 or 1/8 of
// its size, as long as its longer side keeps `longest` pixels.
Image read_image(const gltf::EncodedImage& file, uint32_t longest);

} // namespace picture
