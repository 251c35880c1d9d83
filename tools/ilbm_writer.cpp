#include "tools/ilbm_writer.h"

#include "tools/lwob_writer.h"

namespace lw_tools {

// Runs of three and more become a run, (1 - n, byte); what lies between is copied, (n - 1, n bytes).
static std::string byte_run(const std::string& row)
{
    std::string packed, literal;
    const auto flush = [&] {
        if (literal.empty()) return;
        packed += static_cast<char>(literal.size() - 1);
        packed += literal;
        literal.clear();
    };
    for (std::size_t i = 0; i < row.size();) {
        std::size_t run = 1;
        while (i + run < row.size() && run < 128 && row[i + run] == row[i]) ++run;
        if (run >= 3) {
            flush();
            packed += static_cast<char>(257 - run);
            packed += row[i];
            i += run;
            continue;
        }
        literal += row[i++];
        if (literal.size() == 128) flush();
    }
    flush();
    return packed;
}

static std::string plane_row(const Ilbm& picture, unsigned y, unsigned plane)
{
    std::string row((picture.width + 15) / 16 * 2, '\0');
    for (unsigned x = 0; x < picture.width; ++x) {
        const bool mask = plane == picture.planes;
        if (!mask && !(picture.values[y * picture.width + x] >> plane & 1)) continue;
        row[x / 8] = static_cast<char>(static_cast<unsigned char>(row[x / 8]) | 0x80u >> x % 8);
    }
    return row;
}

static std::string chunky_row(const Ilbm& picture, unsigned y)
{
    std::string row;
    for (unsigned x = 0; x < picture.width; ++x) row += static_cast<char>(picture.values[y * picture.width + x]);
    if (row.size() % 2) row += '\0';
    return row;
}

std::string ilbm_file(const Ilbm& picture)
{
    Bytes header;
    header.u16(picture.width).u16(picture.height).u32(0); // at 0, 0
    header.u8(picture.planes).u8(picture.mask_plane).u8(picture.packed).u8(0);
    header.u16(0).u8(1).u8(1).u16(picture.width).u16(picture.height); // no transparent colour, square pixels
    Bytes content;
    content.id(picture.type).raw(chunk("BMHD", header));
    if (!picture.palette.empty()) {
        Bytes colors;
        for (const auto& color : picture.palette) colors.u8(color[0]).u8(color[1]).u8(color[2]);
        content.raw(chunk("CMAP", colors));
    }
    if (picture.camg) content.raw(chunk("CAMG", Bytes().u32(picture.mode)));

    Bytes body;
    const auto add = [&](const std::string& row) { body.raw(picture.packed ? byte_run(row) : row); };
    for (unsigned y = 0; y < picture.height; ++y) {
        if (picture.type == "PBM ") {
            add(chunky_row(picture, y));
            continue;
        }
        const unsigned planes = picture.planes + (picture.mask_plane ? 1 : 0);
        for (unsigned plane = 0; plane < planes; ++plane) add(plane_row(picture, y, plane));
    }
    content.raw(chunk("BODY", body));
    return chunk("FORM", content);
}

} // namespace lw_tools
