// The samples' pictures as packed ILBM files.
#include <map>
#include <stdexcept>

#include "tools/ilbm_writer.h"
#include "tools/samples/pictures.h"

namespace samples {

std::string ilbm_bytes(const Picture& picture, IlbmDepth depth)
{
    lw_tools::Ilbm file;
    file.width = static_cast<unsigned>(picture.width);
    file.height = static_cast<unsigned>(picture.height);
    file.planes = depth == IlbmDepth::palette_8 ? 8 : 24;
    file.packed = true;
    std::map<std::array<unsigned char, 3>, uint32_t> numbers;
    for (int y = 0; y < picture.height; ++y) {
        for (int x = 0; x < picture.width; ++x) {
            const Color color = picture.at(x, y);
            if (file.planes == 24) {
                file.values.push_back(color.red | color.green << 8 | color.blue << 16);
                continue;
            }
            const std::array<unsigned char, 3> rgb = {static_cast<unsigned char>(color.red),
                                                      static_cast<unsigned char>(color.green),
                                                      static_cast<unsigned char>(color.blue)};
            const auto [entry, is_new] = numbers.try_emplace(rgb, static_cast<uint32_t>(numbers.size()));
            if (is_new) file.palette.push_back(rgb);
            file.values.push_back(entry->second);
        }
    }
    if (numbers.size() > 256) throw std::logic_error("a picture for a palette has more than 256 colours");
    if (file.planes == 8) file.palette.resize(256);
    return lw_tools::ilbm_file(file);
}

} // namespace samples
