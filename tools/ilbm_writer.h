// Writes Amiga pictures plane by plane, as EA IFF 85 describes them: for the samples and the tests.
#pragma once
#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace lw_tools {

struct Ilbm {
    unsigned width = 0, height = 0, planes = 0;
    std::vector<std::array<unsigned char, 3>> palette; // none: no CMAP
    std::vector<uint32_t> values; // one a pixel; bit p belongs to plane p. 24 planes: red in the lowest 8 bits
    bool packed = false;          // ByteRun1
    bool mask_plane = false;      // one plane more, which shows every pixel
    bool camg = false;
    uint32_t mode = 0;         // CAMG: 0x800 HAM, 0x80 half-brite
    std::string type = "ILBM"; // or "PBM ": a byte a pixel, as PCs wrote it
};

std::string ilbm_file(const Ilbm& picture);

} // namespace lw_tools
