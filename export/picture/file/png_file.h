// PNG files by libpng.
#pragma once
#include "export/picture/file/picture_file.h"

namespace picture {

std::unique_ptr<PictureFile> make_png_file(const std::filesystem::path& target, uint32_t width, uint32_t height,
                                           bool alpha);

} // namespace picture
