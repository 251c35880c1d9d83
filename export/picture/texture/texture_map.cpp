#include "export/picture/texture/texture_map.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "export/picture/base/color.h"

namespace picture {

namespace {

const std::array<float, 256>& straight()
{
    static const std::array<float, 256> table = [] {
        std::array<float, 256> result{};
        for (std::size_t i = 0; i < 256; ++i) result[i] = static_cast<float>(i) / 255;
        return result;
    }();
    return table;
}

// The old pixels under new pixel `i`, each with the share that is covered: two, or three where the old count is odd.
struct Cover {
    uint32_t first = 0, count = 0;
    float share[3] = {};
};

Cover cover(uint32_t old_size, uint32_t new_size, uint32_t i)
{
    Cover result;
    const double step = static_cast<double>(old_size) / new_size, from = i * step, to = from + step;
    result.first = static_cast<uint32_t>(from);
    for (uint32_t k = result.first; k < old_size && k < to && result.count < 3; ++k)
        result.share[result.count++] = static_cast<float>((std::min(to, k + 1.0) - std::max<double>(from, k)) / step);
    return result;
}

// Pixel number on one axis of `size`; `x` is off it by one pixel at most where it repeats.
uint32_t wrapped(int x, uint32_t size, bool repeat)
{
    const int count = static_cast<int>(size);
    if (!repeat) return static_cast<uint32_t>(std::clamp(x, 0, count - 1));
    return static_cast<uint32_t>(x < 0 ? x + count : x >= count ? x - count : x);
}

// Into a range where neither the fraction nor the integer is lost.
float tamed(float u, bool repeat)
{
    if (!std::isfinite(u)) return 0;
    return repeat ? u - std::floor(u) : std::clamp(u, -1.0f, 2.0f);
}

} // namespace

TextureMap::TextureMap(Image image, Content content, uint32_t longest)
    : curve_(content == Content::color ? &linear_of_screen() : &straight())
{
    if (image.rgba.empty()) image = {1, 1, {255, 255, 255, 255}, false};
    alpha_ = image.alpha;
    levels_.push_back(std::move(image));
    while (levels_.back().width > 1 || levels_.back().height > 1) {
        Image next = smaller(levels_.back());
        // What is too large goes as soon as there is a smaller one.
        if (std::max(levels_.back().width, levels_.back().height) > std::max(longest, 1u)) levels_.pop_back();
        levels_.push_back(std::move(next));
    }
}

Image TextureMap::smaller(const Image& from) const
{
    Image to;
    to.width = std::max(from.width / 2, 1u);
    to.height = std::max(from.height / 2, 1u);
    to.rgba.resize(std::size_t{to.width} * to.height * 4);
    std::vector<Cover> columns(to.width);
    for (uint32_t x = 0; x < to.width; ++x) columns[x] = cover(from.width, to.width, x);
    const bool curved = curve_ != &straight();
    const auto byte = [curved](float value) {
        return curved ? screen_of(value) : static_cast<uint8_t>(std::clamp(value * 255 + 0.5f, 0.0f, 255.0f));
    };
    unsigned char* out = to.rgba.data();
    for (uint32_t y = 0; y < to.height; ++y) {
        const Cover rows = cover(from.height, to.height, y);
        for (uint32_t x = 0; x < to.width; ++x, out += 4) {
            float sum[4] = {}, weight = 0;
            for (uint32_t j = 0; j < rows.count; ++j) {
                const unsigned char* pixel =
                    from.rgba.data() + (std::size_t{rows.first + j} * from.width + columns[x].first) * 4;
                for (uint32_t i = 0; i < columns[x].count; ++i, pixel += 4) {
                    const float share = rows.share[j] * columns[x].share[i];
                    const float seen = alpha_ ? share * static_cast<float>(pixel[3]) / 255 : share;
                    for (std::size_t c = 0; c < 3; ++c) sum[c] += seen * (*curve_)[pixel[c]];
                    weight += seen;
                    sum[3] += share * static_cast<float>(pixel[3]) / 255;
                }
            }
            for (std::size_t c = 0; c < 3; ++c) out[c] = weight > 0 ? byte(sum[c] / weight) : uint8_t{0};
            out[3] = static_cast<uint8_t>(std::clamp(sum[3] * 255 + 0.5f, 0.0f, 255.0f));
        }
    }
    return to;
}

glm::vec4 TextureMap::bilinear(std::size_t level, glm::vec2 uv, const Wrap& wrap) const
{
    const Image& image = levels_[level];
    const float x = uv.x * static_cast<float>(image.width) - 0.5f, y = uv.y * static_cast<float>(image.height) - 0.5f;
    const float left = std::floor(x), top = std::floor(y);
    const float right_share = x - left, low_share = y - top;
    const std::size_t x0 = wrapped(static_cast<int>(left), image.width, wrap.repeat_u);
    const std::size_t x1 = wrapped(static_cast<int>(left) + 1, image.width, wrap.repeat_u);
    const std::size_t y0 = wrapped(static_cast<int>(top), image.height, wrap.repeat_v);
    const std::size_t y1 = wrapped(static_cast<int>(top) + 1, image.height, wrap.repeat_v);
    glm::vec4 sum(0);
    const auto add = [&](std::size_t column, std::size_t row, float share) {
        const unsigned char* const pixel = image.rgba.data() + (row * image.width + column) * 4;
        if (alpha_) {
            const float alpha = static_cast<float>(pixel[3]) * (1.0f / 255);
            sum.w += share * alpha;
            share *= alpha;
        }
        sum.x += share * (*curve_)[pixel[0]];
        sum.y += share * (*curve_)[pixel[1]];
        sum.z += share * (*curve_)[pixel[2]];
    };
    add(x0, y0, (1 - right_share) * (1 - low_share));
    add(x1, y0, right_share * (1 - low_share));
    add(x0, y1, (1 - right_share) * low_share);
    add(x1, y1, right_share * low_share);
    if (!alpha_) sum.w = 1;
    return sum;
}

glm::vec4 TextureMap::at(glm::vec2 uv, const Wrap& wrap, float texels) const
{
    uv = {tamed(uv.x, wrap.repeat_u), tamed(uv.y, wrap.repeat_v)};
    glm::vec4 result;
    if (!wrap.mipmap || !(texels > 1) || levels_.size() == 1) {
        result = bilinear(0, uv, wrap);
    } else {
        const float last = static_cast<float>(levels_.size() - 1);
        const float detail = std::min(std::log2(texels), last);
        const auto level = static_cast<std::size_t>(detail);
        const float share = detail - static_cast<float>(level);
        result = bilinear(level, uv, wrap);
        if (share > 0) result += share * (bilinear(level + 1, uv, wrap) - result);
    }
    if (alpha_ && result.w > 0) {
        result.x /= result.w;
        result.y /= result.w;
        result.z /= result.w;
    }
    return result;
}

} // namespace picture
