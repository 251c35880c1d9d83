#include "bench/bench_export.h"

#include <array>
#include <benchmark/benchmark.h>
#include <cmath>
#include <fstream>
#include <stdexcept>
#include <vector>

#include "bench/import_run.h"
#include "export/gltf/image/image_png.h"
#include "export/gltf/material/projection_uv.h"
#include "export/gltf/material/surface_textures.h"

namespace bench {

namespace {

constexpr uint32_t side = 4096;
constexpr std::size_t corners_each = 1'250'000;

// Waves of three colours: neither flat nor noise.
std::array<unsigned char, 3> colour(uint32_t x, uint32_t y)
{
    const double a = std::sin(x * 0.013) + std::sin(y * 0.017), b = std::sin((x + y) * 0.005);
    return {static_cast<unsigned char>(128 + 60 * a), static_cast<unsigned char>(128 + 100 * b),
            static_cast<unsigned char>((x ^ y) >> 4)};
}

tv::TextureProjection frame(tv::ProjectionModel model)
{
    tv::TextureProjection result;
    result.enabled = true;
    result.model = model;
    result.origin = {0, -1, 0};
    result.upoint = {0, -1, -1};
    result.vpoint = {0, 1, 0};
    result.wpoint = {1, -1, 0};
    return result;
}

} // namespace

double texture_coordinates_seconds()
{
    const double start = cpu_seconds();
    float sum = 0;
    for (const tv::ProjectionModel model : {tv::ProjectionModel::orthographic, tv::ProjectionModel::cylindrical,
                                            tv::ProjectionModel::spherical, tv::ProjectionModel::box}) {
        const gltf::UvProjector projector = gltf::make_projector(frame(model));
        if (!projector.usable) throw std::runtime_error("a texture frame of the benchmark can't be used");
        for (std::size_t i = 0; i < corners_each / 3; ++i) {
            // Round and round a ball, seams and poles included.
            const double turn = static_cast<double>(i) * 0.01, height = std::sin(static_cast<double>(i) * 1e-4);
            const double x = std::cos(turn), z = std::sin(turn);
            std::array<gltf::Uv, 3> uv;
            gltf::project_triangle(projector, {{{x, height, z}, {x + 0.02, height, z}, {x, height + 0.02, z}}},
                                   {x, height, z}, uv);
            sum += uv[0].u + uv[1].v + uv[2].u;
        }
    }
    benchmark::DoNotOptimize(sum);
    return cpu_seconds() - start;
}

void write_picture(const std::string& directory)
{
    std::string bytes(18, '\0');
    bytes[2] = 2; // true colour, not packed
    bytes[12] = bytes[14] = static_cast<char>(side & 0xff);
    bytes[13] = bytes[15] = static_cast<char>(side >> 8);
    bytes[16] = 24;
    bytes[17] = 0x20; // rows from the top
    bytes.reserve(18 + std::size_t{side} * side * 3);
    for (uint32_t y = 0; y < side; ++y) {
        for (uint32_t x = 0; x < side; ++x) {
            const std::array<unsigned char, 3> rgb = colour(x, y);
            for (const int channel : {2, 1, 0}) bytes += static_cast<char>(rgb[static_cast<std::size_t>(channel)]);
        }
    }
    std::ofstream file(directory + "/big.tga", std::ios::binary);
    file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    if (!file.flush()) throw std::runtime_error("can't write " + directory + "/big.tga");
}

double embed_picture_seconds(const std::string& directory)
{
    gltf::Options options;
    options.image_directories = {directory};
    gltf::Report report;
    const double start = cpu_seconds();
    gltf::SurfaceTextureMaker maker(tv::scene(), options, report);
    const auto image = maker.image("big.tga");
    const double seconds = cpu_seconds() - start;
    if (!image || image->width != side) throw std::runtime_error("the benchmark's picture wasn't embedded");
    return seconds;
}

double encode_picture_seconds()
{
    static const gltf::Pixels pixels = [] {
        gltf::Pixels made = gltf::make_pixels(side, side);
        for (uint32_t y = 0; y < side; ++y) {
            for (uint32_t x = 0; x < side; ++x) {
                const std::array<unsigned char, 3> rgb = colour(x, y);
                unsigned char* const pixel = made.at(x, y);
                for (std::size_t i = 0; i < 3; ++i) pixel[i] = rgb[i];
                pixel[3] = 255;
            }
        }
        return made;
    }();
    const double start = cpu_seconds();
    benchmark::DoNotOptimize(gltf::encode_png(pixels));
    return cpu_seconds() - start;
}

} // namespace bench
