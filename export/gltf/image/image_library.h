// The image decoder library, loaded at the first use.
#pragma once
#include <span>
#include <string>

#include "export/gltf/image/image_pixels.h"

namespace gltf {

struct DecodeResult {
    Pixels pixels;
    bool has_alpha = false; // an alpha channel, or a transparent colour
    std::string error;      // why there are no pixels; empty: there are
};

// Never throws but for want of memory. A decoder that can't be loaded is told by `error` with each image.
DecodeResult decode_image(std::span<const unsigned char> file);

bool image_library_loaded();

} // namespace gltf
