// A chess table: textures without an image (checkerboard, grid, marble, fractal noise). A surface sends its layers only
// when an image map is among its textures, so each has one, with and without an image.
#include "tools/samples/pictures.h"
#include "tools/samples/samples.h"
#include "tools/samples/shapes.h"

namespace samples {

namespace {

struct Procedural {
    std::string type;
    double size;
    std::vector<float> parameters{};
    std::array<unsigned, 3> color{0, 0, 0};
    std::string image{"(none)"}; // of the image map behind it
    double image_opacity = 1;
};

int textured(Model& model, const std::string& name, const Look& look, const Procedural& procedural)
{
    lw_tools::SurfaceWriter surface = plain_surface(name, look);
    TextureSpec pattern;
    pattern.type = procedural.type;
    pattern.size = {procedural.size, procedural.size, procedural.size};
    pattern.parameters = procedural.parameters;
    pattern.color = procedural.color;
    pattern.flags = y_axis;
    add_texture(surface, pattern);
    TextureSpec map;
    map.channel = procedural.image == "(none)" ? "CTEX" : "DTEX";
    map.image = procedural.image;
    map.flags = y_axis | antialiasing;
    map.size = {4, 1, 4};
    map.opacity = procedural.image_opacity;
    add_texture(surface, map);
    return model.surface(surface);
}

} // namespace

void write_procedurals(const std::string& directory)
{
    Model model;
    const int squares =
        textured(model, "Squares", {.red = 60, .green = 40, .blue = 24, .specular = 0.5, .glossiness = 128},
                 {.type = "Checkerboard", .size = 0.5});
    const int tiles = textured(model, "Tiles", {.red = 196, .green = 188, .blue = 170},
                               {.type = "Grid", .size = 1, .parameters = {0.1f}, .color = {70, 64, 60}});
    const int marble = textured(
        model, "Marble",
        {.red = 225, .green = 222, .blue = 215, .specular = 0.7, .glossiness = 128, .smoothing_angle = 50},
        {.type = "Marble", .size = 0.6, .parameters = {3, 0.2f}, .color = {90, 100, 110}, .image = "Images:Veins.iff"});
    const int wood = textured(model, "Table edge", {.red = 120, .green = 76, .blue = 40, .specular = 0.3},
                              {.type = "Fractal Noise", .size = 0.3, .parameters = {1}, .color = {84, 48, 22}});

    constexpr double top = 2.2;
    std::vector<Vec3> board = {{-2, top, -2}, {-2, top, 2}, {2, top, 2}, {2, top, -2}};
    model.face(squares, board, {0, 1, 0});
    model.box(wood, {-2.3, top - 0.3, -2.3}, {2.3, top - 0.01, 2.3});
    model.lathe({{0, 0, marble},
                 {1.2, 0, marble},
                 {1.2, 0.15, marble},
                 {0.7, 0.25, marble},
                 {0.35, 0.5, marble},
                 {0.3, 1.3, marble},
                 {0.45, 1.6, marble},
                 {0.9, top - 0.3, marble}},
                32);
    model.face(tiles, std::vector<Vec3>{{-5, 0, -5}, {-5, 0, 5}, {5, 0, 5}, {5, 0, -5}}, {0, 1, 0});
    // Two men on the board.
    for (const auto& [x, z] : {std::array{-0.25, -0.75}, std::array{0.75, 0.25}}) {
        model.lathe({{0.2, top, marble},
                     {0.2, top + 0.06, marble},
                     {0.1, top + 0.15, marble},
                     {0.07, top + 0.35, marble},
                     {0.13, top + 0.38, marble},
                     {0.08, top + 0.42, marble},
                     {0.13, top + 0.52, marble},
                     {0.08, top + 0.62, marble},
                     {0, top + 0.64, marble}},
                    20, at(x, 0, z));
    }
    model.write(directory + "/table_procedurals_beside_image_maps.lwo");
    lw_tools::write_file(directory + "/Images/Veins.iff",
                         ilbm_bytes(speckles(128, 21, 150, 255), IlbmDepth::palette_8));
}

} // namespace samples
