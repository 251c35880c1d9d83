#include "export/picture/picture.h"

#include <algorithm>

#include "export/picture/file/picture_file.h"
#include "export/picture/raster/workers.h"
#include "export/picture/setting.h"

namespace picture {

namespace {

// A picture is drawn and written in strips of about this many pixels, each in tiles.
constexpr uint64_t strip_pixels = 1u << 24;

uint32_t tile_side(const Size& size, unsigned threads)
{
    constexpr uint32_t large = 64, small = 32; // large ones share more of the samples at their rims
    const uint64_t tiles = uint64_t{size.width / large + 1} * (size.height / large + 1);
    return tiles >= uint64_t{threads} * 8 ? large : small;
}

} // namespace

Outcome write_still(const gltf::Tables& tables, const std::filesystem::path& out, const Request& request)
{
    const Model model(tables, request.longest_texture);
    const double moment = model.line.seconds(request.frame.value_or(model.line.first_frame));
    const Setting setting(model, request, std::span(&moment, 1));
    Outcome outcome = setting.outcome();
    const Size size = outcome.size;
    const auto file = PictureFile::open(out, size.width, size.height, setting.transparent());

    const unsigned threads = request.threads != 0 ? request.threads : core_count();
    const uint32_t side = tile_side(size, threads), across = (size.width + side - 1) / side;
    const uint32_t down = (size.height + side - 1) / side;
    const uint32_t strip =
        static_cast<uint32_t>(std::clamp<uint64_t>(strip_pixels / (uint64_t{size.width} * side), 1, down));
    const Painter painter = setting.painter();
    std::vector<unsigned char> rgba(std::size_t{size.width} * std::min(strip * side, size.height) * 4);
    std::size_t before = 0;
    const std::size_t total = std::size_t{across} * down;
    for (uint32_t row = 0; row < down && !outcome.stopped; row += strip) {
        const uint32_t rows = std::min(strip, down - row), top = row * side;
        const auto work = [&](std::size_t number) {
            Tile tile;
            tile.x = static_cast<uint32_t>(number % across) * side;
            tile.y = top + static_cast<uint32_t>(number / across) * side;
            tile.width = std::min(side, size.width - tile.x);
            tile.height = std::min(side, size.height - tile.y);
            painter.paint_bytes(tile, rgba.data() + ((std::size_t{tile.y} - top) * size.width + tile.x) * 4,
                                size.width);
        };
        const std::size_t count = std::size_t{rows} * across;
        const auto stop = [&](std::size_t done) { return request.progress && request.progress(before + done, total); };
        outcome.stopped = !share_out(count, threads, work, stop);
        before += count;
        if (!outcome.stopped) file->write(rgba.data(), std::min(rows * side, size.height - top));
    }
    if (!outcome.stopped) file->finish();
    return outcome;
}

Request thumbnail(const gltf::Tables& tables, uint32_t longest)
{
    Request request;
    request.samples = 2;
    request.filter = Filter::box;
    request.longest_texture = std::clamp(longest, 1u, most_pixels);
    const Size whole = tables.cameras.empty() ? Size{1, 1} : natural_size(tables);
    const double factor = static_cast<double>(request.longest_texture) / std::max(whole.width, whole.height);
    const auto scaled = [&](uint32_t side) { return std::max(static_cast<uint32_t>(side * factor + 0.5), 1u); };
    request.size = Size{scaled(whole.width), scaled(whole.height)};
    if (!tables.scene_extras.contains("backdrop")) request.background.kind = Background::Kind::none;
    return request;
}

} // namespace picture
