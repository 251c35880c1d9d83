// PNG files where there is no libpng (Windows): the few chunks that a picture needs, packed by zlib.
// ISO/IEC 15948, sections 5 (layout) and 9.2 (filters).
#include <array>
#include <cstring>
#include <new>

#include <zlib.h>

#include "export/gltf/image/image_png.h"

namespace gltf {
namespace {

constexpr std::size_t packed_at_once = 256 * 1024;

void put_be32(std::vector<unsigned char>& to, uint32_t value)
{
    for (const int shift : {24, 16, 8, 0}) to.push_back(static_cast<unsigned char>(value >> shift & 0xff));
}

void put_chunk(std::vector<unsigned char>& file, const char* name, std::span<const unsigned char> data)
{
    put_be32(file, static_cast<uint32_t>(data.size()));
    const std::size_t checked_from = file.size();
    file.insert(file.end(), name, name + 4);
    file.insert(file.end(), data.begin(), data.end());
    put_be32(file, static_cast<uint32_t>(crc32(0, &file[checked_from], static_cast<uInt>(4 + data.size()))));
}

// Rows into IDAT chunks as they come, so that no second picture is held.
class Packer {
public:
    explicit Packer(std::vector<unsigned char>& file) : file_(file), packed_(packed_at_once)
    {
        if (deflateInit(&stream_, Z_BEST_SPEED) != Z_OK) throw std::bad_alloc();
    }
    ~Packer() { deflateEnd(&stream_); }
    Packer(const Packer&) = delete;
    Packer& operator=(const Packer&) = delete;

    void add(std::vector<unsigned char>& row, int how)
    {
        stream_.next_in = row.data();
        stream_.avail_in = static_cast<uInt>(row.size());
        do {
            stream_.next_out = packed_.data();
            stream_.avail_out = static_cast<uInt>(packed_.size());
            deflate(&stream_, how);
            const std::size_t made = packed_.size() - stream_.avail_out;
            if (made > 0) put_chunk(file_, "IDAT", {packed_.data(), made});
        } while (stream_.avail_out == 0);
    }

private:
    std::vector<unsigned char>& file_;
    std::vector<unsigned char> packed_;
    z_stream stream_{};
};

} // namespace

std::vector<unsigned char> encode_png(const Pixels& pixels)
{
    const bool alpha = any_alpha(pixels);
    const std::size_t bytes = alpha ? 4 : 3;
    constexpr std::array<unsigned char, 8> signature = {0x89, 'P', 'N', 'G', '\r', '\n', 0x1a, '\n'};
    std::vector<unsigned char> file(signature.begin(), signature.end());
    file.reserve(1024 + pixels.rgba.size() / 4);

    std::vector<unsigned char> head;
    put_be32(head, pixels.width);
    put_be32(head, pixels.height);
    const unsigned char colours = alpha ? 6 : 2;
    for (const unsigned char byte : {static_cast<unsigned char>(8), colours}) head.push_back(byte);
    head.insert(head.end(), 3, 0); // deflate, the five filters, no interlace
    put_chunk(file, "IHDR", head);
    {
        Packer packer(file);
        std::vector<unsigned char> row(1 + bytes * pixels.width);
        row[0] = 1; // "Sub": each byte less the same one of the pixel on its left
        for (uint32_t y = 0; y < pixels.height; ++y) {
            std::array<unsigned char, 4> left{};
            for (uint32_t x = 0; x < pixels.width; ++x) {
                const unsigned char* const pixel = pixels.at(x, y);
                for (std::size_t i = 0; i < bytes; ++i)
                    row[1 + bytes * x + i] = static_cast<unsigned char>(pixel[i] - left[i]);
                std::memcpy(left.data(), pixel, 4);
            }
            packer.add(row, y + 1 == pixels.height ? Z_FINISH : Z_NO_FLUSH);
        }
    }
    put_chunk(file, "IEND", {});
    return file;
}

} // namespace gltf
