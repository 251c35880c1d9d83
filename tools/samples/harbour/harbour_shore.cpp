// What stands and floats in the harbour.
#include <cmath>

#include "tools/samples/harbour/harbour.h"
#include "tools/samples/shapes.h"

namespace samples {

namespace {

lw_tools::SurfaceWriter textured(const std::string& name, const Look& look, const TextureSpec& texture)
{
    lw_tools::SurfaceWriter out = plain_surface(name, look);
    add_texture(out, texture);
    return out;
}

double waves(double x, double y)
{
    return 0.05 * std::sin(x * 1.3 + 0.4 * y) + 0.04 * std::sin(y * 1.7 - 0.6 * x);
}

void water(const std::string& directory)
{
    Model model;
    const int sea = model.surface(
        textured("Sea",
                 {.red = 22,
                  .green = 70,
                  .blue = 92,
                  .diffuse = 0.8,
                  .specular = 0.9,
                  .reflection = 0.35,
                  .glossiness = 128,
                  .smoothing_angle = 89.5},
                 {.channel = "BTEX", .image = "Ripples.iff", .flags = y_axis, .size = {4, 1, 4}, .amplitude = 1}));
    Placement flat{{0, 0, 10}, {1, 0, 0}, {0, 0, 1}, {0, -1, 0}}; // the visible side looks up
    model.sheet(sea, 90, 70, 60, 46, flat, waves);
    model.write(directory + "/Water.lwo");
}

void hills(const std::string& directory)
{
    Model model;
    const int grass =
        model.surface(plain_surface("Hills", {.red = 88, .green = 116, .blue = 84, .smoothing_angle = 80}));
    Placement flat{{0, -1, 0}, {1, 0, 0}, {0, 0, 1}, {0, -1, 0}};
    model.sheet(grass, 120, 30, 48, 10, flat, [](double x, double y) {
        const double ridge = std::cos(y * pi / 32),
                     bumps = 5 + 2.5 * std::sin(x * 0.11 + 1) + 1.6 * std::sin(x * 0.23 + 0.1 * y);
        return -ridge * bumps;
    });
    model.write(directory + "/Hills.lwo");
}

void quay(const std::string& directory)
{
    Model model;
    const int wall = model.surface(textured("Masonry", {.red = 170, .green = 165, .blue = 150},
                                            {.type = "Cubic Image Map", .image = "STONES.IFF", .size = {4, 4, 4}}));
    const int boards = model.surface(textured("Pier boards", {.red = 150, .green = 120, .blue = 84},
                                              {.image = "Images:Planks.iff", .flags = y_axis, .size = {3, 1, 3}}));
    const int timber =
        model.surface(plain_surface("Piles", {.red = 84, .green = 64, .blue = 44, .smoothing_angle = 50}));
    const int iron = model.surface(
        plain_surface("Bollards", {.red = 40, .green = 42, .blue = 46, .specular = 0.4, .smoothing_angle = 40}));
    model.box(wall, {-22, -2, 4}, {8, 1.2, 16});
    model.box(boards, {-1.5, 0.95, -6}, {1.5, 1.1, 4});
    for (int i = 0; i < 4; ++i) {
        for (const double side : {-1.35, 1.35}) model.tube(timber, 0.16, -2, 1.25, 10, at(side, 0, -5.7 + 3 * i));
    }
    for (int i = 0; i < 6; ++i) {
        model.lathe({{0.25, 1.2, iron},
                     {0.17, 1.35, iron},
                     {0.17, 1.6, iron},
                     {0.27, 1.7, iron},
                     {0.27, 1.78, iron},
                     {0, 1.82, iron}},
                    14, at(-20 + 4.5 * i, 0, 4.6));
    }
    model.write(directory + "/Quay.lwo");
}

void lighthouse(const std::string& directory)
{
    Model model;
    const int white =
        model.surface(plain_surface("White", {.red = 238, .green = 236, .blue = 228, .smoothing_angle = 30}));
    const int red = model.surface(plain_surface("Red", {.red = 196, .green = 40, .blue = 36, .smoothing_angle = 30}));
    const int iron = model.surface(
        plain_surface("Gallery", {.red = 50, .green = 54, .blue = 60, .specular = 0.4, .smoothing_angle = 30}));
    const int lamp =
        model.surface(plain_surface("Lamp", {.red = 255, .green = 236, .blue = 170, .diffuse = 0.4, .luminosity = 1}));
    const int glass = model.surface(plain_surface("Lantern glass", {.red = 210,
                                                                    .green = 230,
                                                                    .blue = 235,
                                                                    .diffuse = 0.3,
                                                                    .specular = 0.9,
                                                                    .transparency = 0.7,
                                                                    .glossiness = 256,
                                                                    .refraction = 1.2,
                                                                    .smoothing_angle = 30}));
    const int rock = model.surface(plain_surface("Rock", {.red = 104, .green = 98, .blue = 90}));
    std::vector<ProfilePoint> tower;
    for (int i = 0; i <= 5; ++i) tower.push_back({1.7 - 0.16 * i, 1.0 + 1.6 * i, i % 2 ? red : white});
    tower.back().surface = iron;
    tower.insert(tower.end(), {{1.35, 9.0, iron},
                               {1.35, 9.15, iron},
                               {0.7, 9.15, glass},
                               {0.7, 10.3, red},
                               {0.95, 10.3, red},
                               {0.6, 10.8, red},
                               {0.12, 11.1, red},
                               {0.08, 11.6, red},
                               {0, 11.6, red}});
    model.lathe(tower, 32);
    model.ball(lamp, {0.3, 0.4, 0.3}, 14, 8, at(0, 9.7, 0));
    model.torus(iron, 1.32, 0.03, 32, 6, {{0, 9.8, 0}, {1, 0, 0}, {0, 0, 1}, {0, 1, 0}});
    for (int i = 0; i < 12; ++i) {
        model.tube(iron, 0.025, 9.15, 9.8, 6, at(1.32 * std::cos(i * pi / 6), 0, 1.32 * std::sin(i * pi / 6)));
    }
    for (int i = 0; i < 7; ++i) {
        const double angle = i * 2 * pi / 7, reach = 2.2 + 0.5 * (i * 3 % 5) / 5.0;
        model.ball(rock, {1.5, 1.1 + 0.1 * i, 1.5}, 7, 5, at(reach * std::cos(angle), -0.1, reach * std::sin(angle)));
    }
    model.ball(rock, {2.3, 1.6, 2.3}, 9, 6, at(0, -0.3, 0));
    model.write(directory + "/Lighthouse.lwo");
}

void house(const std::string& directory)
{
    Model model;
    const int wall = model.surface(textured("House wall", {.red = 224, .green = 206, .blue = 170},
                                            {.channel = "LTEX",
                                             .type = "Cubic Image Map",
                                             .image = "Windows.iff",
                                             .size = {4.8, 2.6, 4.8},
                                             .center = {0, 1.4, 0},
                                             .opacity = 0.8}));
    const int roof = model.surface(plain_surface("House roof", {.red = 150, .green = 62, .blue = 46}));
    const int chimney = model.surface(plain_surface("Chimney", {.red = 120, .green = 70, .blue = 60}));
    model.box(wall, {-2, 0, -1.8}, {2, 2.8, 1.8});
    model.prism(wall, roof, {{{-1.8, 2.8}, {1.8, 2.8}, {0, 4.4}}}, -2, 2, {{}, {0, 0, 1}, {0, 1, 0}, {1, 0, 0}});
    model.prism(roof, roof, {{{-2.2, 2.5}, {0, 4.45}, {2.2, 2.5}, {2.2, 2.65}, {0, 4.6}, {-2.2, 2.65}}}, -2.2, 2.2,
                {{}, {0, 0, 1}, {0, 1, 0}, {1, 0, 0}});
    model.box(chimney, {0.8, 3, 0.4}, {1.3, 5, 0.9});
    model.write(directory + "/House.lwo");
}

void crate(const std::string& directory)
{
    Model model;
    const int side = model.surface(
        textured("Crate", {.red = 190, .green = 146, .blue = 90},
                 {.type = "Cubic Image Map", .image = "DH0:Images/Crate", .size = {1, 1, 1}, .center = {0, 0.5, 0}}));
    model.box(side, {-0.5, 0, -0.5}, {0.5, 1, 0.5});
    model.write(directory + "/Crate.lwo");
}

void buoy(const std::string& directory)
{
    Model model;
    const int green = model.surface(
        plain_surface("Buoy", {.red = 30, .green = 130, .blue = 70, .specular = 0.4, .smoothing_angle = 40}));
    const int band =
        model.surface(plain_surface("Band", {.red = 240, .green = 240, .blue = 230, .smoothing_angle = 40}));
    const int lamp =
        model.surface(plain_surface("Buoy lamp", {.red = 120, .green = 255, .blue = 150, .luminosity = 1}));
    model.lathe({{0, -0.5, green},
                 {0.6, -0.4, green},
                 {0.7, 0.1, green},
                 {0.6, 0.3, green},
                 {0.32, 0.45, band},
                 {0.24, 0.9, green},
                 {0.14, 1.6, green},
                 {0, 1.62, green}},
                24);
    model.ball(lamp, {0.12, 0.16, 0.12}, 10, 6, at(0, 1.75, 0));
    model.write(directory + "/Buoy.lwo");
}

} // namespace

void write_shore(const std::string& directory)
{
    water(directory);
    hills(directory);
    quay(directory);
    lighthouse(directory);
    house(directory);
    crate(directory);
    buoy(directory);
}

void write_crane(const std::string& directory)
{
    const Look yellow{.red = 226, .green = 170, .blue = 40, .specular = 0.3},
        dark{.red = 52, .green = 54, .blue = 58, .specular = 0.3};
    Model base;
    int frame = base.surface(plain_surface("Crane yellow", yellow));
    int iron = base.surface(plain_surface("Crane iron", dark));
    base.box(iron, {-1.2, 0, -1.2}, {1.2, 0.4, 1.2});
    for (const double x : {-0.5, 0.5}) {
        for (const double z : {-0.5, 0.5}) base.box(frame, {x - 0.09, 0.4, z - 0.09}, {x + 0.09, 5, z + 0.09});
    }
    for (int i = 0; i < 4; ++i) {
        const double y = 1.2 + 1.1 * i;
        base.box(frame, {-0.5, y, -0.55}, {0.5, y + 0.1, -0.45});
        base.box(frame, {-0.5, y, 0.45}, {0.5, y + 0.1, 0.55});
        base.box(frame, {-0.55, y, -0.5}, {-0.45, y + 0.1, 0.5});
        base.box(frame, {0.45, y, -0.5}, {0.55, y + 0.1, 0.5});
    }
    base.box(frame, {-0.8, 5, -0.8}, {0.8, 6.2, 0.8});
    base.write(directory + "/CraneBase.lwo");

    // The boom lies along +Z from its hinge at (0, 6, 0.6): the pivot that the scene gives it.
    Model boom;
    frame = boom.surface(plain_surface("Crane yellow", yellow));
    iron = boom.surface(plain_surface("Crane iron", dark));
    for (const double x : {-0.3, 0.3}) boom.box(frame, {x - 0.06, 5.94, 0.4}, {x + 0.06, 6.06, 7});
    for (int i = 0; i < 8; ++i) boom.box(frame, {-0.3, 5.96, 0.9 + 0.8 * i}, {0.3, 6.04, 1.0 + 0.8 * i});
    boom.tube(iron, 0.2, -0.4, 0.4, 14, along('x', {0, 6, 0.6}));
    boom.tube(iron, 0.16, -0.2, 0.2, 14, along('x', {0, 6, 7}));
    boom.write(directory + "/CraneBoom.lwo");

    Model hook;
    iron = hook.surface(plain_surface("Crane iron", dark));
    hook.tube(iron, 0.025, -2.6, 0, 6);
    hook.box(iron, {-0.14, -2.9, -0.1}, {0.14, -2.6, 0.1});
    hook.torus(iron, 0.14, 0.04, 14, 6, at(0, -3.06, 0));
    hook.write(directory + "/CraneHook.lwo");
}

void write_gull(const std::string& directory)
{
    const Look white{.red = 240, .green = 240, .blue = 238, .smoothing_angle = 70};
    Model body;
    const int feathers = body.surface(plain_surface("Feathers", white));
    const int bill = body.surface(plain_surface("Bill", {.red = 236, .green = 170, .blue = 40}));
    body.ball(feathers, {0.13, 0.12, 0.42}, 14, 8);
    body.ball(feathers, {0.1, 0.1, 0.12}, 12, 7, at(0, 0.08, 0.42));
    body.lathe({{0.035, 0, bill}, {0, 0.16, bill}}, 8, along('z', {0, 0.07, 0.52}));
    body.write(directory + "/GullBody.lwo");

    // One wing, to +X from the shoulder at the origin. Its shape is the same turned round, so that it serves as both.
    Model wing;
    const int top = wing.surface(plain_surface("Wing top", {.red = 150, .green = 156, .blue = 164}));
    const int below = wing.surface(plain_surface("Wing below", white));
    const std::vector<Vec3> inner = {{0, 0, -0.16}, {0, 0, 0.16}, {0.5, 0.08, 0.17}, {0.5, 0.08, -0.17}};
    const std::vector<Vec3> outer = {{0.5, 0.08, -0.17}, {0.5, 0.08, 0.17}, {1.15, 0.02, 0}};
    for (const std::vector<Vec3>& part : {inner, outer}) {
        wing.face(top, part, {0, 1, 0});
        wing.face(below, part, {0, -1, 0});
    }
    wing.write(directory + "/GullWing.lwo");
}

} // namespace samples
