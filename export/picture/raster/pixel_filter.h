// Samples to pixels.
#pragma once
#include <cstdint>
#include <glm/vec4.hpp>
#include <vector>

#include "export/picture/base/request.h"

namespace picture {

// Samples stand on a grid, `side` by `side` in each pixel; each counts as standing in the middle of its cell.
class PixelFilter {
public:
    PixelFilter(Filter filter, unsigned side);

    // Pixels on each side of a picture's piece whose samples are needed too.
    uint32_t border() const { return border_; }

    // samples: (width + 2 border) * side by (height + 2 border) * side, rows from the top; out: width by height.
    void apply(const std::vector<glm::vec4>& samples, uint32_t width, uint32_t height, glm::vec4* out) const;

private:
    unsigned side_;
    uint32_t border_;
    std::vector<float> weights_; // of (2 border + 1) * side samples in a row; their sum is 1
};

} // namespace picture
