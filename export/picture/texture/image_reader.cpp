#include "export/picture/texture/image_reader.h"

#include <algorithm>
#include <csetjmp>
#include <cstdio>
#include <cstring>

#include <jpeglib.h>
#include <png.h>

namespace picture {

namespace {

// What a texture may have at most; the exporter writes no more.
constexpr uint64_t most_pixels = uint64_t{16384} * 16384;

bool sized(Image& image, uint64_t width, uint64_t height)
{
    if (width == 0 || height == 0 || width > 65535 || height > 65535 || width * height > most_pixels) return false;
    image.width = static_cast<uint32_t>(width);
    image.height = static_cast<uint32_t>(height);
    image.rgba.resize(width * height * 4);
    return true;
}

Image read_png(std::span<const unsigned char> bytes)
{
    Image image;
    png_image reader;
    std::memset(&reader, 0, sizeof reader);
    reader.version = PNG_IMAGE_VERSION;
    if (!png_image_begin_read_from_memory(&reader, bytes.data(), bytes.size())) return image;
    image.alpha = (reader.format & PNG_FORMAT_FLAG_ALPHA) != 0;
    reader.format = PNG_FORMAT_RGBA;
    if (!sized(image, reader.width, reader.height) ||
        !png_image_finish_read(&reader, nullptr, image.rgba.data(), 0, nullptr))
        image = {};
    png_image_free(&reader);
    return image;
}

struct JpegErrors {
    jpeg_error_mgr base;
    std::jmp_buf leave;
};

[[noreturn]] void leave_jpeg(j_common_ptr jpeg)
{
    std::longjmp(reinterpret_cast<JpegErrors*>(jpeg->err)->leave, 1);
}

void stay_silent(j_common_ptr, int) {}

// Up to the header. Holds nothing with a destructor, as the next one: libjpeg leaves by longjmp.
bool begin_jpeg(jpeg_decompress_struct& jpeg, JpegErrors& errors, std::span<const unsigned char> bytes,
                uint32_t longest)
{
    if (setjmp(errors.leave)) return false;
    jpeg_create_decompress(&jpeg);
    jpeg_mem_src(&jpeg, bytes.data(), static_cast<unsigned long>(bytes.size()));
    if (jpeg_read_header(&jpeg, TRUE) != JPEG_HEADER_OK) return false;
    jpeg.out_color_space = JCS_EXT_RGBA;
    const uint32_t side = std::max(jpeg.image_width, jpeg.image_height);
    while (jpeg.scale_denom < 8 && side / (jpeg.scale_denom * 2) >= longest) jpeg.scale_denom *= 2;
    jpeg_calc_output_dimensions(&jpeg);
    return true;
}

bool finish_jpeg(jpeg_decompress_struct& jpeg, JpegErrors& errors, unsigned char* rgba, std::size_t row)
{
    if (setjmp(errors.leave)) return false;
    jpeg_start_decompress(&jpeg);
    while (jpeg.output_scanline < jpeg.output_height) {
        JSAMPROW line = rgba + row * jpeg.output_scanline;
        jpeg_read_scanlines(&jpeg, &line, 1);
    }
    return true;
}

Image read_jpeg(std::span<const unsigned char> bytes, uint32_t longest)
{
    Image image;
    jpeg_decompress_struct jpeg;
    std::memset(&jpeg, 0, sizeof jpeg);
    JpegErrors errors;
    jpeg.err = jpeg_std_error(&errors.base);
    errors.base.error_exit = leave_jpeg;
    errors.base.emit_message = stay_silent;
    // What a file that ends too early has is better than nothing.
    if (begin_jpeg(jpeg, errors, bytes, longest) && sized(image, jpeg.output_width, jpeg.output_height))
        finish_jpeg(jpeg, errors, image.rgba.data(), std::size_t{image.width} * 4);
    jpeg_destroy_decompress(&jpeg);
    return image;
}

} // namespace

Image read_image(const gltf::EncodedImage& file, uint32_t longest)
{
    Image image = file.mime == "image/png" ? read_png(file.bytes) : read_jpeg(file.bytes, longest);
    if (image.alpha) {
        image.alpha = false;
        for (std::size_t i = 3; i < image.rgba.size() && !image.alpha; i += 4) image.alpha = image.rgba[i] != 255;
    }
    return image;
}

} // namespace picture
