#include "export/gltf/file/buffer.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <stdexcept>

#include "lib/messages/message.h"

namespace gltf {

static_assert(std::endian::native == std::endian::little, "glTF's data is little-endian and is copied as it stands");

namespace {

constexpr uint64_t largest_file = 0xffffffffull; // a GLB file tells its length in 32 bits
constexpr uint64_t left_for_json = 64ull << 20;
constexpr std::size_t block_size = 1u << 20;

std::size_t parts(Element element)
{
    return static_cast<std::size_t>(element) + 1;
}

} // namespace

void Buffer::claim(uint64_t bytes)
{
    const uint64_t claimed = padded(bytes);
    if (claimed > largest_file - left_for_json - total_) throw messages::Error(messages::message<"data-too-large">());
    total_ += claimed;
}

uint32_t Buffer::append(Stretch stretch, Element element, const void* data, std::size_t bytes, std::size_t count)
{
    if (count == 0) throw std::logic_error("an accessor without elements");
    claim(bytes);
    Blocks& blocks = stretches_[static_cast<std::size_t>(stretch)];
    if (blocks.list.empty() || blocks.list.back().capacity() - blocks.list.back().size() < bytes) {
        // Small scenes stay small: the first block of a stretch is made to measure, later ones hold a MiB.
        const std::size_t least = blocks.list.empty() ? 4096 : block_size;
        blocks.list.emplace_back().reserve(std::max(bytes, least));
    }
    Accessor accessor;
    accessor.stretch = stretch;
    accessor.element = element;
    accessor.offset = blocks.size;
    accessor.count = count;
    places_.push_back({blocks.list.size() - 1, blocks.list.back().size(), bytes});
    const auto* const from = static_cast<const unsigned char*>(data);
    blocks.list.back().insert(blocks.list.back().end(), from, from + bytes);
    blocks.size += bytes;
    accessors_.push_back(accessor);
    return static_cast<uint32_t>(accessors_.size() - 1);
}

std::span<const unsigned char> Buffer::bytes(uint32_t accessor) const
{
    const Place& place = places_.at(accessor);
    const Blocks& blocks = stretches_[static_cast<std::size_t>(accessors_[accessor].stretch)];
    return std::span(blocks.list[place.block]).subspan(place.offset, place.size);
}

uint32_t Buffer::add(Stretch stretch, Element element, std::span<const float> values, bool bounds)
{
    const std::size_t width = parts(element);
    const uint32_t index = append(stretch, element, values.data(), values.size_bytes(), values.size() / width);
    if (bounds && width <= 3) {
        Accessor& accessor = accessors_[index];
        accessor.bounds = true;
        for (std::size_t k = 0; k < width; ++k) accessor.lower[k] = accessor.upper[k] = values[k];
        for (std::size_t i = width; i + width <= values.size(); i += width)
            for (std::size_t k = 0; k < width; ++k) {
                accessor.lower[k] = std::min(accessor.lower[k], values[i + k]);
                accessor.upper[k] = std::max(accessor.upper[k], values[i + k]);
            }
    }
    return index;
}

uint32_t Buffer::add_indices(std::span<const uint32_t> indices)
{
    const uint32_t largest = indices.empty() ? 0 : *std::max_element(indices.begin(), indices.end());
    // 65535 restarts a primitive in some graphics interfaces and may not be used as an index.
    if (largest >= 65535)
        return append(Stretch::index32, Element::scalar, indices.data(), indices.size_bytes(), indices.size());
    std::vector<uint16_t> narrow(indices.size());
    std::transform(indices.begin(), indices.end(), narrow.begin(), [](uint32_t i) { return static_cast<uint16_t>(i); });
    return append(Stretch::index16, Element::scalar, narrow.data(), narrow.size() * sizeof(uint16_t), narrow.size());
}

uint32_t Buffer::add_image(std::shared_ptr<const EncodedImage> image)
{
    claim(image->bytes.size());
    images_.push_back(std::move(image));
    return static_cast<uint32_t>(images_.size() - 1);
}

uint64_t Buffer::size(bool with_images) const
{
    uint64_t size = 0;
    for (const Blocks& blocks : stretches_) size += padded(blocks.size);
    if (with_images)
        for (const auto& image : images_) size += padded(image->bytes.size());
    return size;
}

void Buffer::write(bool with_images, const std::function<void(const void*, std::size_t)>& sink) const
{
    static constexpr unsigned char zeros[4] = {};
    for (const Blocks& blocks : stretches_) {
        for (const std::vector<unsigned char>& block : blocks.list) sink(block.data(), block.size());
        if (blocks.size % 4 != 0) sink(zeros, 4 - blocks.size % 4);
    }
    if (!with_images) return;
    for (const auto& image : images_) {
        sink(image->bytes.data(), image->bytes.size());
        if (image->bytes.size() % 4 != 0) sink(zeros, 4 - image->bytes.size() % 4);
    }
}

} // namespace gltf
