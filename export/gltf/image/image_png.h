// Images as they go into the file: PNG made from pixels, or the bytes of a file that can stay as they are.
#pragma once
#include <cstddef>
#include <optional>
#include <span>
#include <vector>

#include "export/gltf/image/image_pixels.h"

namespace gltf {

// A PNG file, without an alpha channel where all pixels are opaque. Made for speed: the fastest deflate, one filter.
// Throws std::bad_alloc, nothing else.
std::vector<unsigned char> encode_png(const Pixels& pixels);

// The file without what viewers don't agree about or the format forbids (colour profiles, pixel shapes, orientation,
// comments), its picture data untouched. Nothing where it can't stay: a PNG with alpha, whose see-through parts the
// scene doesn't ask for, a JPEG in four colours, or one that is cut off.
std::optional<std::vector<unsigned char>> keep_png(std::span<const unsigned char> file);
std::optional<std::vector<unsigned char>> keep_jpeg(std::span<const unsigned char> file);

} // namespace gltf
