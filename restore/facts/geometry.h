// Points of an object file, and which of them each surface's polygons use: what a morph needs.
#pragma once
#include <cstdint>
#include <cstdio>
#include <optional>
#include <vector>

namespace restore {

struct Geometry {
    std::vector<float> points; // x, y, z a point, the file's coordinates
    // By surface, in the order of their numbers, from 1 on: the points that its polygons of three corners and more use,
    // rising, each once. As many entries as the file has surface names.
    std::vector<std::vector<uint32_t>> used;
};

// From the stream's start. Nothing for what isn't an object file, or ends before its points do. Throws std::bad_alloc
// alone. Memory is in proportion to the file.
std::optional<Geometry> read_geometry(std::FILE* file);

} // namespace restore
