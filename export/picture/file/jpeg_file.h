// JPEG files by libjpeg.
#pragma once
#include "export/picture/file/picture_file.h"

namespace picture {

std::unique_ptr<PictureFile> make_jpeg_file(const std::filesystem::path& target, uint32_t width, uint32_t height);

} // namespace picture
