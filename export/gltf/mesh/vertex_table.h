// The vertices of one glTF primitive, each once.
#pragma once
#include <array>
#include <cstdint>
#include <optional>
#include <vector>

namespace gltf {

struct Vertex {
    std::array<float, 3> position{}, normal{};
    std::array<float, 2> uv{};
    // What keeps vertices apart that look the same: the lowest bit is set where the picture lies mirrored on the triangle,
    // whose tangent space can't be shared; above it stands the point, from 1, where points move one by one.
    uint32_t apart = 0;
    bool mirrored() const { return apart & 1; }
    bool operator==(const Vertex&) const = default;
};

class VertexTable {
public:
    // The number of the vertex that is equal in all parts, new or known. Constant time on average. Nothing where
    // 32 bits can't number another one.
    std::optional<uint32_t> add(Vertex vertex);

    std::size_t size() const { return vertices_.size(); }
    const Vertex& operator[](std::size_t i) const { return vertices_[i]; }

private:
    void grow();

    std::vector<Vertex> vertices_;
    std::vector<uint32_t> slots_; // vertex number + 1; 0: free. A power of two, at most half full
};

} // namespace gltf
