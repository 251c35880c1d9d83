#include "export/gltf/image/image_png.h"

#include <csetjmp>
#include <cstring>
#include <new>

#include <png.h>

namespace gltf {
namespace {

struct Sink {
    std::vector<unsigned char>* to;
    bool full = false; // no memory. An exception must not pass through libpng's frames
};

void write_some(png_structp png, png_bytep data, png_size_t size)
{
    auto& sink = *static_cast<Sink*>(png_get_io_ptr(png));
    try {
        sink.to->insert(sink.to->end(), data, data + size);
    } catch (const std::bad_alloc&) {
        sink.full = true;
    }
    if (sink.full) png_error(png, "no memory");
}

void flush_nothing(png_structp) {}

void stay_silent(png_structp, png_const_charp) {}

// Holds nothing with a destructor: libpng leaves it by longjmp.
bool write_png(const Pixels& pixels, bool alpha, Sink& sink)
{
    png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, stay_silent);
    if (!png) return false;
    png_infop info = png_create_info_struct(png);
    if (!info || setjmp(png_jmpbuf(png))) {
        png_destroy_write_struct(&png, &info);
        return false;
    }
    png_set_write_fn(png, &sink, write_some, flush_nothing);
    png_set_IHDR(png, info, pixels.width, pixels.height, 8, alpha ? PNG_COLOR_TYPE_RGB_ALPHA : PNG_COLOR_TYPE_RGB,
                 PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
    png_set_compression_level(png, 1);
    png_set_compression_buffer_size(png, 256 * 1024);
    png_set_filter(png, PNG_FILTER_TYPE_BASE, PNG_FILTER_SUB);
    png_write_info(png, info);
    if (!alpha) png_set_filler(png, 0, PNG_FILLER_AFTER);
    for (uint32_t y = 0; y < pixels.height; y++) png_write_row(png, pixels.at(0, y));
    png_write_end(png, nullptr);
    png_destroy_write_struct(&png, &info);
    return true;
}

} // namespace

std::vector<unsigned char> encode_png(const Pixels& pixels)
{
    std::vector<unsigned char> file;
    file.reserve(1024 + pixels.rgba.size() / 4);
    Sink sink{&file};
    if (!write_png(pixels, any_alpha(pixels), sink)) throw std::bad_alloc();
    return file;
}

} // namespace gltf
