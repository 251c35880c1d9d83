// Files that go into the result as they are, but for what viewers don't agree about.
#include <algorithm>
#include <cstring>

#include <zlib.h>

#include "export/gltf/image/image_header.h"
#include "export/gltf/image/image_png.h"

namespace gltf {
namespace {

using Bytes = std::span<const unsigned char>;

void append(std::vector<unsigned char>& to, Bytes bytes)
{
    to.insert(to.end(), bytes.begin(), bytes.end());
}

} // namespace

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
        // 16 bits per colour are twice the size for nothing that a viewer shows, and 4 in the next byte is an alpha channel.
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
