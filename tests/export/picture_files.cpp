#include "tests/export/picture_files.h"

#include "export/gltf/image/image_png.h"

namespace test {
namespace {

constexpr unsigned char colors[4][3] = {{255, 0, 0}, {0, 255, 0}, {0, 0, 255}, {255, 255, 255}};

void put(std::string& to, std::initializer_list<unsigned> values)
{
    for (const unsigned value : values) to += static_cast<char>(value);
}

void put_le16(std::string& to, unsigned value)
{
    put(to, {value & 0xff, value >> 8 & 0xff});
}

void put_le32(std::string& to, unsigned value)
{
    put_le16(to, value & 0xffff);
    put_le16(to, value >> 16);
}

void put_bgr(std::string& to, unsigned color)
{
    put(to, {colors[color][2], colors[color][1], colors[color][0]});
}

} // namespace

std::vector<unsigned char> bytes(const std::string& text)
{
    return {text.begin(), text.end()};
}

std::string four_colors_png()
{
    gltf::Pixels pixels = gltf::make_pixels(2, 2);
    for (unsigned i = 0; i < 4; i++)
        for (unsigned c = 0; c < 4; c++) pixels.rgba[i * 4 + c] = c < 3 ? colors[i][c] : 255;
    const std::vector<unsigned char> file = gltf::encode_png(pixels);
    return {file.begin(), file.end()};
}

std::string four_colors_bmp()
{
    std::string file = "BM";
    for (const unsigned x : {70u, 0u, 54u, 40u, 2u, 2u}) put_le32(file, x);
    put_le16(file, 1);
    put_le16(file, 24);
    for (int i = 0; i < 6; i++) put_le32(file, 0);
    for (const unsigned color : {2u, 3u, 0u, 1u}) { // rows from the bottom, each filled up to 4 bytes
        put_bgr(file, color);
        if (color % 2) put_le16(file, 0);
    }
    return file;
}

std::string four_colors_targa(unsigned depth, bool packed)
{
    std::string file;
    put(file, {0, 0, packed ? 10u : 2u, 0, 0, 0, 0, 0, 0, 0, 0, 0, 2, 0, 2, 0, depth, depth == 32 ? 8u : 0u});
    for (const unsigned color : {2u, 3u, 0u, 1u}) {
        if (packed) put(file, {0});
        put_bgr(file, color);
        if (depth == 32) put(file, {0});
    }
    return file;
}

std::string four_colors_gif()
{
    std::string file = "GIF89a";
    put(file, {2, 0, 2, 0, 0x81, 0, 0});
    for (const auto& color : colors) put(file, {color[0], color[1], color[2]});
    put(file, {0x2c, 0, 0, 0, 0, 2, 0, 2, 0, 0});
    // Codes: clear, 0, 1, 2 in 3 bits, then 3 and the end in 4, from the lowest bit on.
    const unsigned codes = 4u | 0u << 3 | 1u << 6 | 2u << 9 | 3u << 12 | 5u << 16;
    put(file, {2, 3, codes & 0xff, codes >> 8 & 0xff, codes >> 16, 0, 0x3b});
    return file;
}

std::string four_colors_tiff()
{
    std::string file("II*\0", 4);
    put_le32(file, 8);
    const unsigned entries[][4] = {// tag, type (3: 16 bits, 4: 32), count, value
                                   {256, 3, 1, 2},   {257, 3, 1, 2}, {258, 3, 3, 122}, {259, 3, 1, 1}, {262, 3, 1, 2},
                                   {273, 4, 1, 128}, {277, 3, 1, 3}, {278, 3, 1, 2},   {279, 4, 1, 12}};
    put_le16(file, 9);
    for (const auto& [tag, type, count, value] : entries) {
        put_le16(file, tag);
        put_le16(file, type);
        put_le32(file, count);
        put_le32(file, value);
    }
    put_le32(file, 0);
    for (int i = 0; i < 3; i++) put_le16(file, 8); // at 122
    for (const auto& color : colors) put(file, {color[0], color[1], color[2]});
    return file;
}

std::string four_colors_pcx()
{
    std::string file;
    put(file, {10, 5, 1, 8, 0, 0, 0, 0, 1, 0, 1, 0, 72, 0, 72, 0});
    file.resize(65);
    put(file, {3, 2, 0, 1, 0});
    file.resize(128);
    for (unsigned y = 0; y < 2; y++)
        for (unsigned c = 0; c < 3; c++)
            for (unsigned x = 0; x < 2; x++) {
                const unsigned value = colors[y * 2 + x][c];
                if (value >= 0xc0) put(file, {0xc1});
                put(file, {value});
            }
    return file;
}

std::string grey_jpeg()
{
    std::string file;
    put(file, {0xff, 0xd8, 0xff, 0xdb, 0, 67, 0});
    file.append(64, '\x10');
    put(file, {0xff, 0xc0, 0, 11, 8, 0, 8, 0, 8, 1, 1, 0x11, 0});
    for (const unsigned table : {0x00u, 0x10u}) { // one code of one bit: no difference, and end of block
        put(file, {0xff, 0xc4, 0, 20, table, 1});
        file.append(15, '\0');
        put(file, {0});
    }
    put(file, {0xff, 0xda, 0, 8, 1, 1, 0, 0, 63, 0, 0x3f, 0xff, 0xd9});
    return file;
}

} // namespace test
