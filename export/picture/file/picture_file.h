// PNG and JPEG files, row by row.
#pragma once
#include <cstdint>
#include <filesystem>
#include <memory>

namespace picture {

class PictureFile {
public:
    // By the ending of the name: .png, .jpg, .jpeg, any case; std::runtime_error for another, for a size that the format
    // can't hold, and for alpha in a JPEG.
    static std::unique_ptr<PictureFile> open(const std::filesystem::path& target, uint32_t width, uint32_t height,
                                             bool alpha);
    virtual ~PictureFile() = default;

    // The next rows, 4 bytes a pixel (red, green, blue, alpha). Throws std::runtime_error, as finish() does, with one
    // line that names the file.
    virtual void write(const unsigned char* rgba, uint32_t rows) = 0;
    // Takes the target's place. Without it the target stays as it was.
    virtual void finish() = 0;
};

bool is_picture_name(const std::filesystem::path& name);

} // namespace picture
