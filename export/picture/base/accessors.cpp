#include "export/picture/base/accessors.h"

namespace picture {

namespace {

template <typename Number>
std::span<const Number> numbers(std::span<const unsigned char> bytes)
{
    // The buffer keeps every stretch aligned for its components.
    return {reinterpret_cast<const Number*>(bytes.data()), bytes.size() / sizeof(Number)};
}

} // namespace

std::span<const float> floats_of(const gltf::Buffer& buffer, uint32_t accessor)
{
    if (accessor >= buffer.accessors().size()) return {};
    return numbers<float>(buffer.bytes(accessor));
}

std::span<const float> floats_of(const gltf::Buffer& buffer, uint32_t accessor, std::size_t parts, std::size_t count)
{
    const std::span<const float> all = floats_of(buffer, accessor);
    const bool fits = !all.empty() && static_cast<std::size_t>(buffer.accessors()[accessor].element) + 1 == parts &&
                      all.size() == parts * count;
    return fits ? all : std::span<const float>();
}

std::vector<uint32_t> indices_of(const gltf::Buffer& buffer, uint32_t accessor)
{
    if (accessor >= buffer.accessors().size()) return {};
    const std::span<const unsigned char> bytes = buffer.bytes(accessor);
    if (buffer.accessors()[accessor].stretch == gltf::Stretch::index16) {
        const auto narrow = numbers<uint16_t>(bytes);
        return {narrow.begin(), narrow.end()};
    }
    const auto wide = numbers<uint32_t>(bytes);
    return {wide.begin(), wide.end()};
}

} // namespace picture
