#include "export/gltf/image/image_header.h"

#include <algorithm>
#include <cstring>
#include <string_view>

namespace gltf {
namespace {

using Bytes = std::span<const unsigned char>;

bool begins(Bytes bytes, std::string_view with, std::size_t at = 0)
{
    return bytes.size() >= at + with.size() && std::memcmp(bytes.data() + at, with.data(), with.size()) == 0;
}

bool is_iff_picture(Bytes bytes)
{
    if (!begins(bytes, "FORM") || bytes.size() < 12) return false;
    for (const char* type : {"ILBM", "PBM ", "ACBM", "DEEP", "RGB8", "RGBN"})
        if (begins(bytes, type, 8)) return true;
    return false;
}

// Walks the chunks to the one that holds the size, which need not be the first.
void read_iff_size(Bytes bytes, ImageHeader& header)
{
    std::size_t at = 12;
    while (bytes.size() - at >= 8 + 4) {
        const unsigned char* const chunk = bytes.data() + at;
        if (std::memcmp(chunk, "BMHD", 4) == 0 || std::memcmp(chunk, "DGBL", 4) == 0) {
            header.width = be16(chunk + 8);
            header.height = be16(chunk + 10);
            return;
        }
        const std::size_t size = be32(chunk + 4);
        const std::size_t step = 8 + size + (size & 1);
        if (bytes.size() - at <= step) return;
        at += step;
    }
}

bool is_targa(Bytes bytes)
{
    if (bytes.size() < 18) return false;
    const unsigned map = bytes[1], type = bytes[2], depth = bytes[16];
    if (map > 1 || !(type == 1 || type == 2 || type == 3 || type == 9 || type == 10 || type == 11)) return false;
    if ((type == 1 || type == 9) != (map == 1) && map == 0) return false;
    if (depth != 8 && depth != 15 && depth != 16 && depth != 24 && depth != 32) return false;
    return le16(&bytes[12]) != 0 && le16(&bytes[14]) != 0;
}

bool is_pcx(Bytes bytes)
{
    return bytes.size() >= 128 && bytes[0] == 10 && bytes[1] <= 5 && bytes[2] <= 1 &&
           (bytes[3] == 1 || bytes[3] == 2 || bytes[3] == 4 || bytes[3] == 8);
}

uint32_t magnitude(uint32_t two_complement) // a bitmap stored from the top has a negative height
{
    return two_complement & 0x80000000u ? 0u - two_complement : two_complement;
}

void read_bmp_size(Bytes bytes, ImageHeader& header)
{
    if (bytes.size() < 26) return;
    if (le32(&bytes[14]) == 12) { // the oldest form, with 16 bits per side
        header.width = le16(&bytes[18]);
        header.height = le16(&bytes[20]);
        return;
    }
    header.width = magnitude(le32(&bytes[18]));
    header.height = magnitude(le32(&bytes[22]));
}

} // namespace

JpegFrame read_jpeg_frame(Bytes bytes)
{
    JpegFrame frame;
    if (bytes.size() < 4 || bytes[0] != 0xff || bytes[1] != 0xd8) return frame;
    // Some writers pad after the end marker, so it is looked for in the last bytes rather than at the very end.
    const std::size_t tail = std::min<std::size_t>(bytes.size(), 64);
    for (std::size_t i = bytes.size() - tail; i + 1 < bytes.size(); i++)
        if (bytes[i] == 0xff && bytes[i + 1] == 0xd9) frame.complete = true;
    std::size_t at = 2;
    while (bytes.size() - at >= 4) {
        if (bytes[at] != 0xff) return frame;
        const unsigned marker = bytes[at + 1];
        if (marker == 0xff) { // fill byte
            at++;
            continue;
        }
        if (marker == 0x01 || (marker >= 0xd0 && marker <= 0xd8)) { // these stand alone
            at += 2;
            continue;
        }
        if (marker == 0xda || marker == 0xd9) return frame; // the picture begins, or nothing follows
        const std::size_t size = be16(&bytes[at + 2]);
        if (size < 2 || bytes.size() - at < 2 + size) return frame;
        const bool frame_marker =
            marker >= 0xc0 && marker <= 0xcf && marker != 0xc4 && marker != 0xc8 && marker != 0xcc;
        if (frame_marker && size >= 8) {
            frame.bits = bytes[at + 4];
            frame.height = be16(&bytes[at + 5]);
            frame.width = be16(&bytes[at + 7]);
            frame.components = bytes[at + 9];
            frame.usual_coding = marker <= 0xc2;
            return frame;
        }
        at += 2 + size;
    }
    return frame;
}

ImageHeader read_image_header(Bytes bytes)
{
    ImageHeader header;
    if (is_iff_picture(bytes)) {
        header.kind = ImageKind::iff;
        read_iff_size(bytes, header);
    } else if (begins(bytes, "\x89PNG\r\n\x1a\n")) {
        header.kind = ImageKind::png;
        if (begins(bytes, "IHDR", 12) && bytes.size() >= 24) {
            header.width = be32(&bytes[16]);
            header.height = be32(&bytes[20]);
        }
    } else if (begins(bytes, "\xff\xd8\xff")) {
        header.kind = ImageKind::jpeg;
        const JpegFrame frame = read_jpeg_frame(bytes);
        header.width = frame.width;
        header.height = frame.height;
    } else if (begins(bytes, "GIF87a") || begins(bytes, "GIF89a")) {
        header.kind = ImageKind::gif;
        if (bytes.size() >= 10) {
            header.width = le16(&bytes[6]);
            header.height = le16(&bytes[8]);
        }
    } else if (begins(bytes, {"II*\0", 4}) || begins(bytes, {"MM\0*", 4})) {
        header.kind = ImageKind::tiff;
    } else if (begins(bytes, "BM") && bytes.size() >= 18 && le32(&bytes[14]) >= 12 && le32(&bytes[14]) <= 256) {
        header.kind = ImageKind::bmp;
        read_bmp_size(bytes, header);
    } else if (begins(bytes, "\x01\xda") && bytes.size() >= 12) {
        header.kind = ImageKind::sgi;
        header.width = be16(&bytes[6]);
        header.height = be16(&bytes[8]);
    } else if (is_pcx(bytes)) {
        header.kind = ImageKind::pcx;
        header.width = (le16(&bytes[8]) - le16(&bytes[4]) + 1) & 0xffffu;
        header.height = (le16(&bytes[10]) - le16(&bytes[6]) + 1) & 0xffffu;
    } else if (is_targa(bytes)) {
        header.kind = ImageKind::tga;
        header.width = le16(&bytes[12]);
        header.height = le16(&bytes[14]);
    }
    return header;
}

const char* kind_name(ImageKind kind)
{
    switch (kind) {
    case ImageKind::iff: return "IFF";
    case ImageKind::png: return "PNG";
    case ImageKind::jpeg: return "JPEG";
    case ImageKind::tga: return "Targa";
    case ImageKind::bmp: return "BMP";
    case ImageKind::gif: return "GIF";
    case ImageKind::tiff: return "TIFF";
    case ImageKind::pcx: return "PCX";
    case ImageKind::sgi: return "SGI";
    case ImageKind::unknown: break;
    }
    return "unknown";
}

} // namespace gltf
