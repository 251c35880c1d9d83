// Amiga pictures for tests, written plane by plane.
#pragma once
#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace test {

using Color = std::array<unsigned char, 3>;

struct Ilbm {
    unsigned width = 0, height = 0, planes = 0;
    std::vector<Color> palette;
    std::vector<uint32_t> values; // one a pixel; bit p belongs to plane p. 24 planes: red in the lowest 8 bits
    bool packed = false;          // ByteRun1
    bool mask_plane = false;
    bool camg = false;
    uint32_t mode = 0;         // CAMG: 0x800 HAM, 0x80 half-brite
    std::string type = "ILBM"; // or "PBM ": a byte a pixel, as PCs wrote it
};

inline void put16(std::string& to, unsigned value)
{
    to += static_cast<char>(value >> 8);
    to += static_cast<char>(value);
}

inline void put32(std::string& to, std::size_t value)
{
    put16(to, static_cast<unsigned>(value >> 16 & 0xffff));
    put16(to, static_cast<unsigned>(value & 0xffff));
}

inline void put_chunk(std::string& to, const char* name, const std::string& body)
{
    to += name;
    put32(to, body.size());
    to += body;
    if (body.size() % 2) to += '\0';
}

// Runs of three and more become a run, what lies between is copied: both forms of ByteRun1 come up.
inline std::string byte_run(const std::string& row)
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
        while (i + run < row.size() && run < 128 && row[i + run] == row[i]) run++;
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

inline std::string write_ilbm(const Ilbm& picture)
{
    std::string header, body, form = picture.type;
    put16(header, picture.width);
    put16(header, picture.height);
    put32(header, 0); // position
    header += static_cast<char>(picture.planes);
    header += static_cast<char>(picture.mask_plane ? 1 : 0);
    header += static_cast<char>(picture.packed ? 1 : 0);
    header += '\0';
    put16(header, 0);     // transparent colour
    header += "\x0a\x0b"; // shape of a pixel
    put16(header, picture.width);
    put16(header, picture.height);
    put_chunk(form, "BMHD", header);
    std::string map;
    for (const Color& color : picture.palette)
        for (const unsigned char c : color) map += static_cast<char>(c);
    if (!map.empty()) put_chunk(form, "CMAP", map);
    if (picture.camg) {
        std::string mode;
        put32(mode, picture.mode);
        put_chunk(form, "CAMG", mode);
    }
    const std::size_t row_bytes = (picture.width + 15) / 16 * 2;
    for (unsigned y = 0; y < picture.height; y++) {
        if (picture.type == "PBM ") {
            std::string row;
            for (unsigned x = 0; x < picture.width; x++)
                row += static_cast<char>(picture.values[y * picture.width + x]);
            if (row.size() % 2) row += '\0';
            body += picture.packed ? byte_run(row) : row;
            continue;
        }
        for (unsigned plane = 0; plane < picture.planes + (picture.mask_plane ? 1 : 0); plane++) {
            std::string row(row_bytes, '\0');
            for (unsigned x = 0; x < picture.width; x++) {
                const bool mask = plane == picture.planes; // every pixel is opaque
                const bool bit = mask || (picture.values[y * picture.width + x] >> plane & 1) != 0;
                if (bit) row[x / 8] = static_cast<char>(static_cast<unsigned char>(row[x / 8]) | 0x80u >> x % 8);
            }
            body += picture.packed ? byte_run(row) : row;
        }
    }
    put_chunk(form, "BODY", body);
    std::string file = "FORM";
    put32(file, form.size());
    return file + form;
}

} // namespace test
