// The bytes that the JSON part points into: vertex data, indices, key frames and images, each kind in one stretch.
#pragma once
#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <vector>

#include "export/gltf/base/encoded_image.h"

namespace gltf {

// A stretch becomes one buffer view. Vertex data has a stretch for each width, since a view has one stride.
enum class Stretch : uint8_t { vec3, vec2, vec4, index32, index16, keys };
inline constexpr std::size_t stretch_count = 6;

enum class Element : uint8_t { scalar, vec2, vec3, vec4 };

struct Accessor {
    Stretch stretch = Stretch::vec3;
    Element element = Element::scalar;
    uint64_t offset = 0; // within its stretch, bytes
    uint64_t count = 0;  // elements, above 0
    bool bounds = false;
    std::array<float, 3> lower{}, upper{}; // as many as the element has parts
};

// Every stretch and image starts at a multiple of 4.
constexpr uint64_t padded(uint64_t size)
{
    return (size + 3) & ~uint64_t{3};
}

class Buffer {
public:
    // More than the 32-bit lengths of a GLB file can tell is refused: messages::Error. So is data without an element.
    uint32_t add(Stretch stretch, Element element, std::span<const float> values, bool bounds);
    uint32_t add_indices(std::span<const uint32_t> indices); // 16 bits each where all fit
    uint32_t add_image(std::shared_ptr<const EncodedImage> image);

    const std::vector<Accessor>& accessors() const { return accessors_; }
    const std::vector<std::shared_ptr<const EncodedImage>>& images() const { return images_; }
    // An accessor's elements as they will stand in the file, aligned for its components. Good until the buffer goes.
    std::span<const unsigned char> bytes(uint32_t accessor) const;
    uint64_t stretch_size(Stretch stretch) const { return stretches_[static_cast<std::size_t>(stretch)].size; }
    uint64_t size(bool with_images) const; // of what write() hands out
    // Hands out the bytes of the stretches in order, then those of the images, each padded to a multiple of 4.
    void write(bool with_images, const std::function<void(const void*, std::size_t)>& sink) const;

private:
    struct Blocks {
        std::vector<std::vector<unsigned char>> list; // blocks of their own, so that growing copies nothing
        uint64_t size = 0;
    };
    struct Place {
        std::size_t block, offset, size; // bytes of one block of its stretch
    };
    uint32_t append(Stretch stretch, Element element, const void* data, std::size_t bytes, std::size_t count);
    void claim(uint64_t bytes);

    std::array<Blocks, stretch_count> stretches_;
    std::vector<Accessor> accessors_;
    std::vector<Place> places_; // of each accessor
    std::vector<std::shared_ptr<const EncodedImage>> images_;
    uint64_t total_ = 0;
};

} // namespace gltf
