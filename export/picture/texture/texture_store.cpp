#include "export/picture/texture/texture_store.h"

#include <algorithm>

namespace picture {

namespace {

constexpr uint64_t budget = 1ull << 30; // bytes of all images, smaller copies apart

uint64_t size_at(const gltf::EncodedImage& image, uint32_t longest)
{
    uint64_t width = image.width, height = image.height;
    while (std::max(width, height) > longest) {
        width = std::max<uint64_t>(width / 2, 1);
        height = std::max<uint64_t>(height / 2, 1);
    }
    return width * height * 4;
}

} // namespace

TextureStore::TextureStore(const gltf::Tables& tables, uint32_t longest)
    : tables_(tables), longest_(std::max(longest, 1u))
{
    const auto total = [&] {
        uint64_t sum = 0;
        for (const auto& image : tables.buffer.images()) sum += size_at(*image, longest_);
        return sum;
    };
    while (longest_ > 16 && total() > budget) longest_ /= 2;
}

TextureStore::~TextureStore() = default;

uint32_t TextureStore::reserve(uint32_t image, Content content)
{
    const auto [entry, added] = numbers_.try_emplace({image, content}, static_cast<uint32_t>(entries_.size()));
    if (added) {
        entries_.push_back(std::make_unique<Entry>());
        entries_.back()->image = image;
        entries_.back()->content = content;
    }
    return entry->second;
}

void TextureStore::load(const Entry& entry) const
{
    entry.map = std::make_unique<TextureMap>(read_image(*tables_.buffer.images()[entry.image], longest_), entry.content,
                                             longest_);
}

} // namespace picture
