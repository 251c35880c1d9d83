// IFF ILBM as EA IFF 85 describes it: rows of bit planes, each packed by ByteRun1.
#include <map>
#include <stdexcept>
#include <tuple>

#include "tools/lwob_writer.h"
#include "tools/samples/pictures.h"

namespace samples {

using lw_tools::Bytes;

// Runs of 2 to 128 equal bytes become (1 - n, byte), the rest (n - 1, n bytes).
static void pack_row(Bytes& out, const std::vector<uint8_t>& row)
{
    const auto run_at = [&row](std::size_t i) {
        std::size_t end = i + 1;
        while (end < row.size() && end - i < 128 && row[end] == row[i]) ++end;
        return end - i;
    };
    for (std::size_t i = 0; i < row.size();) {
        const std::size_t run = run_at(i);
        if (run >= 3) {
            out.u8(static_cast<unsigned>(257 - run)).u8(row[i]);
            i += run;
            continue;
        }
        std::size_t end = i;
        while (end < row.size() && end - i < 128 && run_at(end) < 3) ++end;
        out.u8(static_cast<unsigned>(end - i - 1));
        for (; i < end; ++i) out.u8(row[i]);
    }
}

std::string ilbm_bytes(const Picture& picture, IlbmDepth depth)
{
    const int planes = depth == IlbmDepth::palette_8 ? 8 : 24;
    std::map<std::tuple<int, int, int>, uint32_t> palette;
    Bytes colors;
    const auto value_of = [&](Color color) -> uint32_t {
        if (planes == 24) return color.red | color.green << 8 | color.blue << 16; // plane 0 is the lowest red bit
        const auto [entry, is_new] =
            palette.try_emplace({color.red, color.green, color.blue}, static_cast<uint32_t>(palette.size()));
        if (is_new) colors.u8(color.red).u8(color.green).u8(color.blue);
        if (palette.size() > 256) throw std::logic_error("a picture for a palette has more than 256 colours");
        return entry->second;
    };

    Bytes body;
    const auto row_bytes = static_cast<std::size_t>((picture.width + 15) / 16 * 2);
    for (int y = 0; y < picture.height; ++y) {
        for (int plane = 0; plane < planes; ++plane) {
            std::vector<uint8_t> row(row_bytes);
            for (int x = 0; x < picture.width; ++x) {
                if (value_of(picture.at(x, y)) >> plane & 1u) {
                    row[static_cast<std::size_t>(x / 8)] |= static_cast<uint8_t>(0x80 >> x % 8);
                }
            }
            pack_row(body, row);
        }
    }
    for (auto i = palette.size(); planes == 8 && i < 256; ++i) colors.u8(0).u8(0).u8(0);

    const auto width = static_cast<unsigned>(picture.width), height = static_cast<unsigned>(picture.height);
    Bytes header;
    header.u16(width).u16(height).u16(0).u16(0).u8(static_cast<unsigned>(planes)).u8(0).u8(1).u8(0);
    header.u16(0).u8(1).u8(1).u16(width).u16(height);
    Bytes content;
    content.id("ILBM").raw(lw_tools::chunk("BMHD", header));
    if (planes == 8) content.raw(lw_tools::chunk("CMAP", colors));
    content.raw(lw_tools::chunk("BODY", body));
    return lw_tools::chunk("FORM", content);
}

} // namespace samples
