#include "export/gltf/image/image_ilbm.h"

#include <cstring>

#include "export/gltf/image/image_header.h"

namespace gltf {
namespace {

constexpr uint32_t half_brite = 0x80, hold_and_modify = 0x800;

} // namespace

CompletedIlbm complete_ilbm(std::span<const unsigned char> bytes)
{
    if (bytes.size() < 12 || std::memcmp(&bytes[8], "ILBM", 4) != 0) return {};
    unsigned planes = 0;
    std::size_t colors = 0, at = 12;
    while (bytes.size() - at >= 8) {
        const unsigned char* const chunk = bytes.data() + at;
        const std::size_t size = be32(chunk + 4), left = bytes.size() - at - 8;
        if (std::memcmp(chunk, "CAMG", 4) == 0) return {};
        if (std::memcmp(chunk, "BODY", 4) == 0) break;
        if (size >= left) return {}; // cut off before the picture
        if (std::memcmp(chunk, "BMHD", 4) == 0 && size >= 9) planes = chunk[8 + 8];
        if (std::memcmp(chunk, "CMAP", 4) == 0) colors = size / 3;
        at += 8 + size + (size & 1);
        if (at >= bytes.size()) return {};
    }
    if (bytes.size() - at < 8 || colors == 0) return {};
    uint32_t mode = 0;
    if (planes == 6 && colors <= 32) mode = colors <= 16 ? hold_and_modify : half_brite;
    if (planes == 8 && colors <= 64) mode = hold_and_modify;
    if (mode == 0) return {};

    CompletedIlbm completed;
    completed.file.reserve(bytes.size() + 12);
    completed.file.assign(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(at));
    const unsigned char camg[12] = {
        'C', 'A', 'M', 'G', 0, 0, 0, 4, 0, 0, static_cast<unsigned char>(mode >> 8), static_cast<unsigned char>(mode)};
    completed.file.insert(completed.file.end(), camg, camg + 12);
    completed.file.insert(completed.file.end(), bytes.begin() + static_cast<std::ptrdiff_t>(at), bytes.end());
    const uint32_t form = be32(&bytes[4]);
    const uint32_t longer = form > 0xffffffffu - 12 ? form : form + 12;
    for (unsigned i = 0; i < 4; i++) completed.file[4 + i] = static_cast<unsigned char>(longer >> (24 - 8 * i));
    return completed;
}

} // namespace gltf
