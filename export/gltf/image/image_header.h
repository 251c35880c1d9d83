// What an image file is, and how large it claims to be, read off its first bytes.
#pragma once
#include <cstddef>
#include <cstdint>
#include <span>

namespace gltf {

enum class ImageKind : uint8_t { unknown, iff, png, jpeg, tga, bmp, gif, tiff, pcx, sgi };

struct ImageHeader {
    ImageKind kind = ImageKind::unknown;
    uint32_t width = 0, height = 0; // 0: it stands deeper in the file (TIFF), or the file is cut off
};

// Total: any bytes have a header. Targa files have no signature; one is taken for it when nothing else fits and its
// header makes sense.
ImageHeader read_image_header(std::span<const unsigned char> bytes);

const char* kind_name(ImageKind kind); // "IFF", "PNG" ...

// A JPEG stream's frame: what must be known to put the file into glTF as it is.
struct JpegFrame {
    uint32_t width = 0, height = 0;
    unsigned bits = 0, components = 0;
    bool usual_coding = false; // baseline or progressive Huffman
    bool complete = false;     // reaches its end marker
};
JpegFrame read_jpeg_frame(std::span<const unsigned char> bytes);

inline uint32_t be16(const unsigned char* p)
{
    return static_cast<uint32_t>(p[0]) << 8 | p[1];
}

inline uint32_t be32(const unsigned char* p)
{
    return be16(p) << 16 | be16(p + 2);
}

inline uint32_t le16(const unsigned char* p)
{
    return static_cast<uint32_t>(p[1]) << 8 | p[0];
}

inline uint32_t le32(const unsigned char* p)
{
    return le16(p + 2) << 16 | le16(p);
}

} // namespace gltf
