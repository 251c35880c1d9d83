// What a reader can't do without: one pass over the file in blocks of 8192 bytes. The ratios are taken over these.
#pragma once
#include <cstdint>
#include <string>
#include <vector>

namespace bench {

struct FlatObject {
    std::vector<float> points;
    std::vector<int32_t> indices, sizes;
};
// Turns the floats of an object's points, and widens its polygons' indices.
FlatObject read_flat(const std::string& path);

// Parts a text into tokens and turns those that are numbers; gives their sum, so that none is left out.
double read_tokens(const std::string& path);

} // namespace bench
