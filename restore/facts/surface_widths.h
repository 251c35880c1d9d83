// How the importer reads the sub-chunks of a surface: by fixed widths, whatever their sizes say.
#pragma once
#include <algorithm>
#include <cstdint>
#include <iterator>
#include <string_view>

namespace restore {

enum : int { width_of_text = 0, width_unknown = -1 };

// Bytes of data; width_of_text: a text with its zero byte, padded to an even length; width_unknown: passed over by size.
constexpr int sub_chunk_width(std::string_view id)
{
    struct Width {
        std::string_view id;
        int width;
    };
    constexpr Width widths[] = {
        {"BTEX", width_of_text},
        {"COLR", 4},
        {"CTEX", width_of_text},
        {"DIFF", 2},
        {"DTEX", width_of_text},
        {"EDGE", 4},
        {"FLAG", 2},
        {"GLOS", 2},
        {"LTEX", width_of_text},
        {"LUMI", 2},
        {"REFL", 2},
        {"RFLT", 2},
        {"RIMG", width_of_text},
        {"RIND", 4},
        {"RSAN", 4},
        {"RTEX", width_of_text},
        {"SMAN", 4},
        {"SPEC", 2},
        {"STEX", width_of_text},
        {"TAAS", 4},
        {"TALP", width_of_text},
        {"TAMP", 4},
        {"TCLR", 4},
        {"TCTR", 12},
        {"TFAL", 12},
        {"TFLG", 2},
        {"TFP0", 4},
        {"TFP1", 4},
        {"TFP2", 4},
        {"TFRQ", 2},
        {"TIMG", width_of_text},
        {"TIP0", 2},
        {"TIP1", 2},
        {"TIP2", 2},
        {"TOPC", 4},
        {"TRAN", 2},
        {"TSIZ", 12},
        {"TSP0", 4},
        {"TSP1", 4},
        {"TSP2", 4},
        {"TTEX", width_of_text},
        {"TVAL", 2},
        {"TVEL", 12},
        {"TWRP", 4},
        {"VDIF", 4},
        {"VLUM", 4},
        {"VRFL", 4},
        {"VSPC", 4},
        {"VTRN", 4},
    };
    static_assert(std::is_sorted(std::begin(widths), std::end(widths),
                                 [](const Width& a, const Width& b) { return a.id < b.id; }));
    const Width* const at = std::lower_bound(std::begin(widths), std::end(widths), id,
                                             [](const Width& width, std::string_view of) { return width.id < of; });
    return at != std::end(widths) && at->id == id ? at->width : width_unknown;
}

// A text's bytes as the importer takes them, when its zero byte comes behind `length` bytes.
constexpr std::size_t text_width(std::size_t length)
{
    return (length + 2) & ~std::size_t{1};
}

} // namespace restore
