// Images where FFmpeg's libraries aren't to be had (Windows): the usual kinds by stb_image. Amiga pictures stay closed.
#include "export/gltf/image/image_library.h"

#include <memory>

// Only what it decodes from memory. It checks sizes before it asks for memory.
#define STB_IMAGE_IMPLEMENTATION
#define STB_IMAGE_STATIC
#define STBI_NO_STDIO
#define STBI_ONLY_PNG
#define STBI_ONLY_JPEG
#define STBI_ONLY_TGA
#define STBI_ONLY_BMP
#define STBI_MAX_DIMENSIONS 16384
#include <stb/stb_image.h>

#include "export/gltf/image/image_decoder.h"
#include "export/gltf/image/image_header.h"

namespace gltf {
namespace {

struct FreePixels {
    void operator()(stbi_uc* pixels) const { stbi_image_free(pixels); }
};

bool is_read_here(ImageKind kind)
{
    return kind == ImageKind::png || kind == ImageKind::jpeg || kind == ImageKind::tga || kind == ImageKind::bmp;
}

} // namespace

bool image_library_loaded()
{
    return true;
}

DecodeResult decode_image(std::span<const unsigned char> file)
{
    DecodeResult result;
    const ImageHeader header = read_image_header(file);
    if (header.kind == ImageKind::unknown) {
        result.error = "it is not an image of a known kind";
    } else if (!is_read_here(header.kind)) {
        result.error = std::string(kind_name(header.kind)) +
                       " images can't be read in this build for Windows; a PNG under this very name can";
    } else if (header.width > LW_IMAGE_MAX_SIDE || header.height > LW_IMAGE_MAX_SIDE) {
        result.error = "it claims to be larger than 16384 pixels on a side";
    } else {
        int width = 0, height = 0, components = 0;
        const std::unique_ptr<stbi_uc, FreePixels> pixels(
            stbi_load_from_memory(file.data(), static_cast<int>(file.size()), &width, &height, &components, 4));
        if (!pixels) {
            result.error = std::string("it can't be decoded: ") + stbi_failure_reason();
            return result;
        }
        result.pixels.width = static_cast<uint32_t>(width);
        result.pixels.height = static_cast<uint32_t>(height);
        const std::size_t size = std::size_t{result.pixels.width} * result.pixels.height * 4;
        result.pixels.rgba.assign(pixels.get(), pixels.get() + size);
        result.has_alpha = components == 2 || components == 4;
    }
    return result;
}

} // namespace gltf
