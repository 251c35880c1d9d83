// The few chunks that a picture needs, packed by zlib. ISO/IEC 15948, sections 5 (layout) and 9 (filters).
#include "export/gltf/image/image_png.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <new>

#include <zlib.h>

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
    // unpacked: the bytes of all rows together.
    Packer(std::vector<unsigned char>& file, uint64_t unpacked, int strategy)
        : file_(file), packed_(packed_at_once), unpacked_(unpacked)
    {
        constexpr int usual_memory = 8;
        if (deflateInit2(&stream_, Z_BEST_SPEED, Z_DEFLATED, MAX_WBITS, usual_memory, strategy) != Z_OK)
            throw std::bad_alloc();
    }
    ~Packer() { deflateEnd(&stream_); }
    Packer(const Packer&) = delete;
    Packer& operator=(const Packer&) = delete;

    void add(std::span<unsigned char> row, bool last)
    {
        stream_.next_in = row.data();
        stream_.avail_in = static_cast<uInt>(row.size());
        do {
            if (stream_.avail_out == 0) begin_chunk();
            deflate(&stream_, last ? Z_FINISH : Z_NO_FLUSH);
            if (stream_.avail_out == 0) end_chunk();
        } while (stream_.avail_in > 0 || (last && stream_.avail_out == 0));
        if (last) end_chunk();
    }

private:
    void begin_chunk()
    {
        stream_.next_out = packed_.data();
        stream_.avail_out = static_cast<uInt>(packed_.size());
    }
    void end_chunk()
    {
        const std::size_t size = packed_.size() - stream_.avail_out;
        if (size == 0) return;
        if (!begun_) ask_for_less_memory();
        begun_ = true;
        put_chunk(file_, "IDAT", {packed_.data(), size});
        stream_.avail_out = 0;
    }
    // zlib's head claims a window of 32 KiB, which whoever unpacks the data has to make room for. A small picture never
    // looks back farther than its own size, and may say so. RFC 1950, section 2.2.
    void ask_for_less_memory()
    {
        if (unpacked_ > 16384) return;
        unsigned window = 8; // bits
        while (unpacked_ > uint64_t{1} << window) ++window;
        packed_[0] = static_cast<unsigned char>((window - 8) << 4 | Z_DEFLATED);
        packed_[1] = static_cast<unsigned char>(packed_[1] & 0xe0);
        packed_[1] = static_cast<unsigned char>(packed_[1] + 31 - (packed_[0] * 256u + packed_[1]) % 31);
    }

    std::vector<unsigned char>& file_;
    std::vector<unsigned char> packed_;
    const uint64_t unpacked_;
    z_stream stream_{};
    bool begun_ = false;
};

// The filter "Sub": each byte less the same one of the pixel on its left.
void filter_row(const unsigned char* rgba, std::size_t bytes, std::span<unsigned char> row)
{
    std::array<unsigned char, 4> left{};
    for (std::size_t at = 0; at < row.size(); at += bytes, rgba += 4) {
        for (std::size_t i = 0; i < bytes; ++i) row[at + i] = static_cast<unsigned char>(rgba[i] - left[i]);
        std::memcpy(left.data(), rgba, 4);
    }
}

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
        // A single column has nothing on its left.
        const bool filtered = pixels.width > 1;
        std::vector<unsigned char> row(1 + bytes * pixels.width);
        row[0] = filtered ? 1 : 0;
        Packer packer(file, uint64_t{row.size()} * pixels.height, filtered ? Z_FILTERED : Z_DEFAULT_STRATEGY);
        for (uint32_t y = 0; y < pixels.height; ++y) {
            filter_row(pixels.at(0, y), bytes, std::span(row).subspan(1));
            packer.add(row, y + 1 == pixels.height);
        }
    }
    put_chunk(file, "IEND", {});
    return file;
}

} // namespace gltf
