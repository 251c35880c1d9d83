// Pictures for sample textures, drawn in whole numbers so that every machine draws the same bytes.
#pragma once
#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace samples {

struct Color {
    uint8_t red = 0, green = 0, blue = 0;
};

struct Picture {
    int width = 0, height = 0;
    std::vector<Color> pixels; // row by row from the top

    Picture(int width_, int height_, Color fill);
    Color& at(int x, int y) { return pixels[static_cast<std::size_t>(y * width + x)]; }
    const Color& at(int x, int y) const { return pixels[static_cast<std::size_t>(y * width + x)]; }
    void rectangle(int x, int y, int w, int h, Color color); // clipped
    void disc(int x, int y, int radius, Color color);
    void triangle(std::array<int, 6> corners, Color color);
    void text(int x, int y, int scale, const std::string& digits, Color color); // 3 x 5 cells; digits alone
};

// 16 numbered fields, an arrow that points up in the middle, and four corners that differ in colour and shape: a
// picture that is turned or mirrored shows it at a glance.
Picture test_card();
Picture planks(Color wood, Color gap, int count, int size); // boards across, with grain
Picture stones(int size);                                   // masonry
Picture crate(int size);
Picture flag();
Picture speckles(int size, uint32_t seed, int low, int high); // soft grey clouds, seamless
Picture windows(int columns, int rows);                       // white panes on black, some dark
Picture net(int size);                                        // white cords on black

enum class IlbmDepth { palette_8, true_colour_24 };
// An IFF ILBM file, ByteRun1. With a palette the picture may hold at most 256 colours.
std::string ilbm_bytes(const Picture& picture, IlbmDepth depth);

} // namespace samples
