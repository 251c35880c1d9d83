#include "export/gltf/mesh/vertex_table.h"

#include <bit>

namespace gltf {

namespace {

uint64_t mix(uint64_t hash, uint32_t bits)
{
    hash = (hash ^ bits) * 0x9e3779b97f4a7c15ull;
    return hash ^ (hash >> 29);
}

uint64_t hash_of(const Vertex& vertex)
{
    uint64_t hash = vertex.apart;
    for (const float part : vertex.position) hash = mix(hash, std::bit_cast<uint32_t>(part));
    for (const float part : vertex.normal) hash = mix(hash, std::bit_cast<uint32_t>(part));
    for (const float part : vertex.uv) hash = mix(hash, std::bit_cast<uint32_t>(part));
    return hash ^ (hash >> 32);
}

} // namespace

std::optional<uint32_t> VertexTable::add(Vertex vertex)
{
    // -0 equals 0 and has to have its hash.
    for (float& part : vertex.position) part += 0.0f;
    for (float& part : vertex.normal) part += 0.0f;
    for (float& part : vertex.uv) part += 0.0f;
    if (2 * (vertices_.size() + 1) > slots_.size()) grow();
    const std::size_t mask = slots_.size() - 1;
    std::size_t slot = hash_of(vertex) & mask;
    for (; slots_[slot] != 0; slot = (slot + 1) & mask)
        if (vertices_[slots_[slot] - 1] == vertex) return slots_[slot] - 1;
    if (vertices_.size() >= 0xfffffffeu) return std::nullopt;
    vertices_.push_back(vertex);
    slots_[slot] = static_cast<uint32_t>(vertices_.size());
    return slots_[slot] - 1;
}

void VertexTable::grow()
{
    slots_.assign(slots_.empty() ? 64 : 2 * slots_.size(), 0);
    const std::size_t mask = slots_.size() - 1;
    for (std::size_t i = 0; i < vertices_.size(); ++i) {
        std::size_t slot = hash_of(vertices_[i]) & mask;
        while (slots_[slot] != 0) slot = (slot + 1) & mask;
        slots_[slot] = static_cast<uint32_t>(i + 1);
    }
}

} // namespace gltf
