#include "export/gltf/image_png.h"

#include <csetjmp>
#include <cstring>
#include <new>

#include <png.h>
#include <zlib.h>

#include "export/gltf/image_header.h"

namespace gltf {
namespace {

using Bytes = std::span<const unsigned char>;

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

void append(std::vector<unsigned char>& to, Bytes bytes)
{
    to.insert(to.end(), bytes.begin(), bytes.end());
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

std::optional<std::vector<unsigned char>> keep_png(Bytes file)
{
    std::vector<unsigned char> kept(file.begin(),
                                    file.begin() + static_cast<std::ptrdiff_t>(std::min<std::size_t>(file.size(), 8)));
    bool data = false;
    for (std::size_t at = 8; file.size() >= at && file.size() - at >= 12;) {
        const std::size_t size = be32(&file[at]);
        if (size > file.size() - at - 12) return std::nullopt;
        const char* const name = reinterpret_cast<const char*>(&file[at + 4]);
        const auto is = [&](const char* other) { return std::memcmp(name, other, 4) == 0; };
        const uLong check = crc32(0, &file[at + 4], static_cast<uInt>(size + 4));
        if (check != be32(&file[at + 8 + size])) return std::nullopt;
        // 16 bits a colour are twice the size for nothing that a viewer shows, and 4 in the next byte is an alpha channel.
        if (is("IHDR") && (size != 13 || file[at + 16] > 8 || (file[at + 17] & 4) != 0)) return std::nullopt;
        if (is("tRNS") || is("acTL")) return std::nullopt;
        if (is("IHDR") || is("PLTE") || is("IDAT") || is("IEND")) append(kept, file.subspan(at, 12 + size));
        data = data || is("IDAT");
        if (is("IEND")) return data ? std::optional(std::move(kept)) : std::nullopt;
        at += 12 + size;
    }
    return std::nullopt;
}

std::optional<std::vector<unsigned char>> keep_jpeg(Bytes file)
{
    const JpegFrame frame = read_jpeg_frame(file);
    if (!frame.complete || !frame.usual_coding || frame.bits != 8) return std::nullopt;
    if (frame.components != 1 && frame.components != 3) return std::nullopt;
    std::vector<unsigned char> kept = {0xff, 0xd8};
    std::size_t at = 2;
    while (file.size() - at >= 4 && file[at] == 0xff) {
        const unsigned marker = file[at + 1];
        if (marker == 0xda) {
            append(kept, file.subspan(at));
            return kept;
        }
        if (marker == 0xff) {
            at++;
            continue;
        }
        if (marker == 0x01 || (marker >= 0xd0 && marker <= 0xd9)) return std::nullopt;
        const std::size_t size = be16(&file[at + 2]);
        if (size < 2 || file.size() - at < 2 + size) return std::nullopt;
        // Adobe's marker tells whether the three components are RGB, which few viewers ask.
        if (marker == 0xee && size >= 14 && std::memcmp(&file[at + 4], "Adobe", 5) == 0 && file[at + 15] != 1)
            return std::nullopt;
        const bool application = marker >= 0xe0 && marker <= 0xef, comment = marker == 0xfe;
        if (!application && !comment) append(kept, file.subspan(at, 2 + size));
        at += 2 + size;
    }
    return std::nullopt;
}

} // namespace gltf
