// An image and its smaller copies, sampled with a filter as wide as the ray is where it meets the surface.
#pragma once
#include <glm/vec2.hpp>
#include <glm/vec4.hpp>
#include <vector>

#include "export/picture/texture/image_reader.h"

namespace picture {

enum class Content : uint8_t { color, numbers }; // bytes on the screen's curve, or straight values such as normals

struct Wrap {
    bool repeat_u = true, repeat_v = true; // else the outermost pixels go on
    bool mipmap = true;                    // else the image itself at any distance
};

class TextureMap {
public:
    // An empty image is one white pixel. `longest`: larger copies are dropped.
    TextureMap(Image image, Content content, uint32_t longest);

    uint32_t width() const { return levels_[0].width; }
    uint32_t height() const { return levels_[0].height; }

    // Colours linear, alpha not multiplied in, though weighed with it. (0, 0) is the image's upper left corner, (1, 1)
    // the lower right one. `texels`: how many pixels of this map the filter spans, from 0 on.
    glm::vec4 at(glm::vec2 uv, const Wrap& wrap, float texels) const;

private:
    glm::vec4 bilinear(std::size_t level, glm::vec2 uv, const Wrap& wrap) const; // alpha multiplied in
    Image smaller(const Image& from) const;

    std::vector<Image> levels_; // each half as wide and high as the one before, down to 1 x 1
    const std::array<float, 256>* curve_;
    bool alpha_ = false;
};

} // namespace picture
