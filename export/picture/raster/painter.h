// Pieces of a picture.
#pragma once
#include <glm/vec4.hpp>
#include <optional>

#include "export/picture/raster/pixel_filter.h"
#include "export/picture/shading/tracer.h"

namespace picture {

struct Frame {
    uint32_t width = 0, height = 0; // of the whole picture, pixels
    unsigned side = 4;              // samples a pixel: side by side, 1 to most_side
    Filter filter = Filter::gaussian;
    std::optional<Backdrop> behind; // nothing: the picture is transparent there
};

// A piece of the picture, pixels from the upper left.
struct Tile {
    uint32_t x = 0, y = 0, width = 0, height = 0;
};

class Painter {
public:
    // Borrows all of it.
    Painter(const Stage& stage, const Viewpoint& view, const Lighting& lighting, const Frame& frame);

    // Linear colours, clipped to 0..1 sample by sample and multiplied with their coverage in w; rows from the top.
    // The same numbers for a pixel whatever tile it is drawn in, and by which thread.
    void paint(const Tile& tile, glm::vec4* out) const;

    // The same as bytes of the screen: 4 a pixel, alpha last and not multiplied in; `row` pixels from line to line.
    void paint_bytes(const Tile& tile, unsigned char* rgba, std::size_t row) const;

    // Of samples in the middle of the pixels that meet a surface: their mean brightness (the luminance of linear
    // colours) and how many they are.
    struct Brightness {
        double mean = 0;
        std::size_t covered = 0;
    };
    Brightness brightness() const;

private:
    struct Sample {
        Ray ray;
        glm::vec2 place; // in the picture, 0 to 1 from the upper left
    };
    Sample sample(int64_t x, int64_t y, unsigned number) const;
    void paint_row(int64_t x, int64_t y, uint32_t count, glm::vec4* out) const;
    void shade_pixel(const Sample* samples, const Hit* hits, glm::vec4* out) const;
    glm::vec4 shade(const Sample& sample, const Hit& hit) const;

    const Stage& stage_;
    const Frame& frame_;
    const Tracer tracer_;
    const Viewpoint view_;
    const PixelFilter filter_;
    glm::mat3 axes_;
    float pixel_ = 0;   // width of a shaded sample's cone: per unit of way, or in scene units where not perspective
    float spacing_ = 0; // of samples, as a share of the picture's width
};

} // namespace picture
