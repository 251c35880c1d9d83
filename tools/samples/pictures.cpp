#include "tools/samples/pictures.h"

#include <algorithm>

namespace samples {

namespace {

// A number without pattern for a place; the constants are those of the 32-bit finalizer of MurmurHash3.
uint32_t scatter(uint32_t x, uint32_t y, uint32_t seed)
{
    uint32_t h = x * 374761393u + y * 668265263u + seed * 2246822519u;
    h = (h ^ h >> 16) * 0x85ebca6bu;
    h = (h ^ h >> 13) * 0xc2b2ae35u;
    return h ^ h >> 16;
}

// Value noise, 0 to 255: random values every `cell` pixels, straight lines between them; repeats after `size`.
int noise(int x, int y, int cell, int size, uint32_t seed)
{
    const int cells = size / cell, column = x / cell, row = y / cell;
    const auto value = [&](int cx, int cy) {
        return static_cast<int>(scatter(static_cast<uint32_t>(cx % cells), static_cast<uint32_t>(cy % cells), seed) &
                                255);
    };
    const int fx = x % cell, fy = y % cell;
    const int top = value(column, row) * (cell - fx) + value(column + 1, row) * fx;
    const int bottom = value(column, row + 1) * (cell - fx) + value(column + 1, row + 1) * fx;
    return (top * (cell - fy) + bottom * fy) / (cell * cell);
}

int clouds(int x, int y, int size, uint32_t seed)
{
    return (4 * noise(x, y, size / 4, size, seed) + 2 * noise(x, y, size / 8, size, seed + 1) +
            noise(x, y, size / 16, size, seed + 2)) /
           7;
}

// Shades in steps of 8, so that a picture of one hue fits a palette.
Color shaded(Color color, int percent)
{
    const auto shade = [percent](int value) {
        return static_cast<uint8_t>(std::clamp(value * percent / 100, 0, 255) / 8 * 8);
    };
    return {shade(color.red), shade(color.green), shade(color.blue)};
}

} // namespace

Picture::Picture(int width_, int height_, Color fill)
    : width(width_), height(height_), pixels(static_cast<std::size_t>(width_ * height_), fill)
{
}

void Picture::rectangle(int x, int y, int w, int h, Color color)
{
    for (int row = std::max(y, 0); row < std::min(y + h, height); ++row) {
        for (int column = std::max(x, 0); column < std::min(x + w, width); ++column) at(column, row) = color;
    }
}

void Picture::disc(int x, int y, int radius, Color color)
{
    for (int row = -radius; row <= radius; ++row) {
        for (int column = -radius; column <= radius; ++column) {
            if (row * row + column * column <= radius * radius) rectangle(x + column, y + row, 1, 1, color);
        }
    }
}

void Picture::triangle(std::array<int, 6> c, Color color)
{
    const auto side = [](int ax, int ay, int bx, int by, int px, int py) {
        return (bx - ax) * (py - ay) - (by - ay) * (px - ax);
    };
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const int a = side(c[0], c[1], c[2], c[3], x, y), b = side(c[2], c[3], c[4], c[5], x, y),
                      d = side(c[4], c[5], c[0], c[1], x, y);
            if ((a >= 0 && b >= 0 && d >= 0) || (a <= 0 && b <= 0 && d <= 0)) at(x, y) = color;
        }
    }
}

void Picture::text(int x, int y, int scale, const std::string& digits, Color color)
{
    static constexpr uint16_t glyphs[10] = {0b111'101'101'101'111, 0b010'110'010'010'111, 0b111'001'111'100'111,
                                            0b111'001'111'001'111, 0b101'101'111'001'001, 0b111'100'111'001'111,
                                            0b111'100'111'101'111, 0b111'001'010'010'010, 0b111'101'111'101'111,
                                            0b111'101'111'001'111};
    for (const char digit : digits) {
        for (int cell = 0; cell < 15; ++cell) {
            if (glyphs[digit - '0'] >> (14 - cell) & 1) {
                rectangle(x + cell % 3 * scale, y + cell / 3 * scale, scale, scale, color);
            }
        }
        x += 4 * scale;
    }
}

Picture test_card()
{
    constexpr int size = 256, field = 64;
    const Color ink{24, 24, 40}, paper[] = {{232, 232, 224}, {176, 200, 216}};
    Picture out(size, size, paper[0]);
    for (int i = 0; i < 16; ++i) {
        const int x = i % 4 * field, y = i / 4 * field;
        out.rectangle(x, y, field, field, paper[(i % 4 + i / 4) % 2]);
        const std::string number = std::to_string(i + 1);
        out.text(x + (number.size() == 1 ? 26 : 16), y + 20, 5, number, ink);
    }
    out.rectangle(116, 96, 24, 104, {200, 40, 32}); // the arrow's shaft
    out.triangle({128, 40, 84, 104, 172, 104}, {200, 40, 32});
    out.rectangle(0, 0, 24, 24, {220, 40, 40});             // top left: a red square
    out.disc(243, 12, 12, {40, 160, 60});                   // top right: a green disc
    out.triangle({0, 231, 0, 255, 24, 255}, {40, 80, 200}); // bottom left: a blue triangle
    out.rectangle(232, 240, 24, 7, {216, 168, 0});          // bottom right: a yellow cross
    out.rectangle(240, 232, 7, 24, {216, 168, 0});
    for (int i = 0; i < size; ++i) {
        out.at(i, 0) = out.at(i, size - 1) = out.at(0, i) = out.at(size - 1, i) = ink;
    }
    return out;
}

Picture planks(Color wood, Color gap, int count, int size)
{
    Picture out(size, size, wood);
    const int board = size / count;
    for (int y = 0; y < size; ++y) {
        const int which = y / board;
        const int tone = 88 + static_cast<int>(scatter(static_cast<uint32_t>(which), 0, 7) % 25);
        const int joint = static_cast<int>(scatter(static_cast<uint32_t>(which), 1, 7) % static_cast<uint32_t>(size));
        for (int x = 0; x < size; ++x) {
            const int grain = noise(x, y * 8 % size, size / 8, size, 11) / 16 - 8;
            const bool seam = y % board < std::max(board / 12, 1) || std::abs(x - joint) < std::max(board / 20, 1);
            out.at(x, y) = seam ? gap : shaded(wood, tone + grain);
        }
    }
    return out;
}

Picture stones(int size)
{
    Picture out(size, size, {96, 96, 88});
    const int course = size / 8, stone = size / 4;
    for (int y = 0; y < size; ++y) {
        for (int x = 0; x < size; ++x) {
            const int row = y / course, shifted = (x + row % 2 * stone / 2) % size, column = shifted / stone;
            const int tone =
                80 + static_cast<int>(scatter(static_cast<uint32_t>(column), static_cast<uint32_t>(row), 3) % 30);
            if (y % course < 2 || shifted % stone < 2) continue;
            out.at(x, y) = shaded({168, 160, 144}, tone + clouds(x, y, size, 5) / 8 - 16);
        }
    }
    return out;
}

Picture crate(int size)
{
    Picture out = planks({192, 144, 88}, {72, 48, 24}, 5, size);
    const Color frame{152, 104, 56}, dark{88, 56, 24};
    const int width = size / 9;
    for (int y = 0; y < size; ++y) {
        const int x = size - y; // a strut from corner to corner
        out.rectangle(x - width / 2 - 1, y, width + 2, 1, dark);
        out.rectangle(x - width / 2, y, width, 1, frame);
    }
    for (const int edge : {0, size - width}) {
        out.rectangle(edge, 0, width, size, frame);
        out.rectangle(0, edge, size, width, frame);
    }
    out.rectangle(width, width, size - 2 * width, 2, dark);
    out.rectangle(width, width, 2, size - 2 * width, dark);
    for (const int x : {width / 2, size - width / 2}) {
        for (const int y : {width / 2, size - width / 2}) out.disc(x, y, width / 5, {56, 56, 64});
    }
    return out;
}

Picture flag()
{
    Picture out(96, 64, {240, 240, 232});
    out.rectangle(0, 0, 96, 22, {24, 64, 136});
    out.rectangle(0, 43, 96, 21, {24, 64, 136});
    out.disc(32, 32, 15, {216, 168, 32});
    out.disc(36, 32, 11, {240, 240, 232});
    return out;
}

Picture speckles(int size, uint32_t seed, int low, int high)
{
    Picture out(size, size, {});
    for (int y = 0; y < size; ++y) {
        for (int x = 0; x < size; ++x) {
            const int value = low + (high - low) * std::clamp(clouds(x, y, size, seed) * 2 - 128, 0, 255) / 255;
            out.at(x, y) = shaded({255, 255, 255}, value * 100 / 255);
        }
    }
    return out;
}

Picture windows(int columns, int rows)
{
    constexpr int field = 16;
    Picture out(columns * field, rows * field, {0, 0, 0});
    for (int row = 0; row < rows; ++row) {
        for (int column = 0; column < columns; ++column) {
            const bool lit = scatter(static_cast<uint32_t>(column), static_cast<uint32_t>(row), 9) % 3 != 0;
            const Color pane = lit ? Color{255, 255, 255} : Color{56, 56, 56};
            out.rectangle(column * field + 4, row * field + 3, 8, 10, pane);
            out.rectangle(column * field + 7, row * field + 3, 2, 10, {0, 0, 0});
        }
    }
    return out;
}

Picture net(int size)
{
    Picture out(size, size, {0, 0, 0});
    const int mesh = size / 8;
    for (int y = 0; y < size; ++y) {
        for (int x = 0; x < size; ++x) {
            if ((x + y) % mesh < 2 || (x - y + size) % mesh < 2) out.at(x, y) = {255, 255, 255};
        }
    }
    return out;
}

} // namespace samples
