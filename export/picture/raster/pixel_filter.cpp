#include "export/picture/raster/pixel_filter.h"

#include <cmath>

namespace picture {

PixelFilter::PixelFilter(Filter filter, unsigned side) : side_(side), border_(filter == Filter::box ? 0 : 1)
{
    constexpr double radius = 1.5, sharpness = 2; // pixels; 1 / (2 sigma^2) with half a pixel
    const std::size_t count = (2 * std::size_t{border_} + 1) * side;
    double sum = 0;
    std::vector<double> weights(count, 1.0);
    for (std::size_t i = 0; i < count; ++i) {
        const double way = (static_cast<double>(i) + 0.5) / side - radius;
        if (filter == Filter::gaussian)
            weights[i] = std::exp(-sharpness * way * way) - std::exp(-sharpness * radius * radius);
        sum += weights[i];
    }
    for (const double weight : weights) weights_.push_back(static_cast<float>(weight / sum));
}

void PixelFilter::apply(const std::vector<glm::vec4>& samples, uint32_t width, uint32_t height, glm::vec4* out) const
{
    // First along the rows, then down the columns: the weights are products.
    const std::size_t row = (std::size_t{width} + 2 * border_) * side_,
                      rows = (std::size_t{height} + 2 * border_) * side_;
    std::vector<glm::vec4> narrow(rows * width);
    for (std::size_t y = 0; y < rows; ++y)
        for (std::size_t x = 0; x < width; ++x) {
            const glm::vec4* const from = samples.data() + y * row + x * side_;
            glm::vec4 sum(0);
            for (std::size_t i = 0; i < weights_.size(); ++i) sum += weights_[i] * from[i];
            narrow[y * width + x] = sum;
        }
    for (std::size_t y = 0; y < height; ++y)
        for (std::size_t x = 0; x < width; ++x) {
            const glm::vec4* const from = narrow.data() + y * side_ * width + x;
            glm::vec4 sum(0);
            for (std::size_t i = 0; i < weights_.size(); ++i) sum += weights_[i] * from[i * width];
            out[y * width + x] = sum;
        }
}

} // namespace picture
