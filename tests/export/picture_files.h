// Small picture files of 2 x 2 pixels, red, green / blue, white, written byte by byte.
#pragma once
#include <string>
#include <vector>

namespace test {

std::vector<unsigned char> bytes(const std::string& text);

std::string four_colors_png();
std::string four_colors_bmp();
std::string four_colors_targa(unsigned depth, bool packed); // with 32 bits its alpha is 0 throughout, as often found
std::string four_colors_gif();
std::string four_colors_tiff();
std::string four_colors_pcx();
std::string grey_jpeg(); // 8 x 8 pixels of (128, 128, 128)

} // namespace test
