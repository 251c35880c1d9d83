#include "export/picture/file/picture_file.h"

#include <stdexcept>

#include "export/picture/file/jpeg_file.h"
#include "export/picture/file/png_file.h"
#include "lib/platform/text.h"

namespace picture {

namespace {

std::string ending_of(const std::filesystem::path& name)
{
    return platform::lower_case(name.extension().string());
}

bool is_jpeg(const std::string& ending)
{
    return ending == ".jpg" || ending == ".jpeg";
}

} // namespace

bool is_picture_name(const std::filesystem::path& name)
{
    const std::string ending = ending_of(name);
    return ending == ".png" || is_jpeg(ending);
}

std::unique_ptr<PictureFile> PictureFile::open(const std::filesystem::path& target, uint32_t width, uint32_t height,
                                               bool alpha)
{
    const std::string ending = ending_of(target);
    if (is_jpeg(ending)) {
        if (alpha)
            throw std::runtime_error("a JPEG picture can't be transparent: write a PNG, or choose a background for '" +
                                     target.string() + "'");
        return make_jpeg_file(target, width, height);
    }
    if (ending != ".png")
        throw std::runtime_error("can't tell what picture to write from the name '" + target.string() +
                                 "': it has to end in .png or .jpg");
    return make_png_file(target, width, height, alpha);
}

} // namespace picture
