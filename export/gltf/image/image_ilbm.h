// Amiga pictures that leave out how they are to be shown.
#pragma once
#include <cstdint>
#include <span>
#include <vector>

namespace gltf {

// A file that stands in for the original where it needs one.
struct CompletedIlbm {
    std::vector<unsigned char> file; // empty: the original is complete
    std::span<const unsigned char> view(std::span<const unsigned char> original) const
    {
        return file.empty() ? original : std::span<const unsigned char>(file);
    }
};

// The screen mode (CAMG) tells a hold-and-modify or half-brite picture from one of 64 or 256 colours, and programs off
// the Amiga left it out. What the palette can't explain decides then: 6 planes with at most 16 colours are HAM, with at
// most 32 half-brite, 8 planes with at most 64 colours HAM8. Such a picture gets a CAMG of its own before its BODY.
CompletedIlbm complete_ilbm(std::span<const unsigned char> bytes);

} // namespace gltf
