// A plaque of 20 surfaces: extruded letters (concave polygons of up to 13 corners), stars laid into the board as detail
// polygons, and above it stars and lines of one and two points, as space scenes had them.
#include <array>

#include "tools/samples/samples.h"
#include "tools/samples/shapes.h"

namespace samples {

namespace {

// Fully saturated colours round the wheel, `which` of `count`.
Look hue(int which, int count)
{
    const int place = which * 6 * 255 / count, sector = place / 255, rest = place % 255;
    constexpr int order[6][3] = {{0, 1, 2}, {3, 0, 2}, {2, 0, 1}, {2, 3, 0}, {1, 2, 0}, {0, 2, 3}};
    const std::array<unsigned, 4> level = {255, static_cast<unsigned>(rest), 0, static_cast<unsigned>(255 - rest)};
    const auto channel = [&](int i) { return 24 + level[static_cast<std::size_t>(order[sector][i])] * 200 / 255; };
    return {.red = channel(0), .green = channel(1), .blue = channel(2), .diffuse = 0.9, .specular = 0.4};
}

} // namespace

void write_letters(const std::string& directory)
{
    constexpr const char* lines[2] = {"NEW", "SCENE"};
    Model model;
    const int board = model.surface(plain_surface("Board", {.red = 44, .green = 48, .blue = 60, .diffuse = 0.9}));
    const int edge = model.surface(
        plain_surface("Board edge", {.red = 150, .green = 120, .blue = 60, .diffuse = 0.7, .specular = 0.6}));
    const int sides =
        model.surface(plain_surface("Letter sides", {.red = 235, .green = 235, .blue = 228, .diffuse = 0.8}));
    std::array<int, 8> letters{};
    std::array<int, 7> stars{};
    for (std::size_t i = 0; i < letters.size(); ++i) {
        letters[i] = model.surface(plain_surface("Letter " + std::to_string(i + 1), hue(static_cast<int>(i), 8)));
    }
    for (std::size_t i = 0; i < stars.size(); ++i) {
        Look look = hue(static_cast<int>(i), 7);
        look.luminosity = 0.5;
        stars[i] = model.surface(plain_surface("Star " + std::to_string(i + 1), look));
    }
    const int points = model.surface(plain_surface("Points", {.red = 255, .green = 255, .blue = 255, .luminosity = 1}));
    const int strokes = model.surface(plain_surface("Lines", {.red = 255, .green = 240, .blue = 160, .luminosity = 1}));

    // The board, its front a polygon with seven detail polygons on it.
    const Outline plate = {{{-3.4, -2.2}, {3.4, -2.2}, {3.4, 2.2}, {-3.4, 2.2}}};
    std::vector<Vec3> front;
    for (const auto& [x, y] : plate.points) front.push_back({x, y, 0});
    lw_tools::Polygon panel = model.face(board, front, {0, 0, -1});
    for (std::size_t i = 0; i < stars.size(); ++i) {
        std::vector<Vec3> corners;
        for (const auto& [x, y] : star(5 + static_cast<int>(i) % 3, 0.28, 0.12).points) {
            corners.push_back({x - 2.7 + 0.9 * static_cast<double>(i), y - 1.75, -0.002});
        }
        panel.details.push_back(model.face(stars[i], corners, {0, 0, -1}));
    }
    lw_tools::ObjectWriter object = model.object();
    object.polygons.assign(1, panel); // the stars stand in the panel now

    Model solids;
    std::size_t next = 0;
    for (int line = 0; line < 2; ++line) {
        const std::string text = lines[line];
        for (std::size_t i = 0; i < text.size(); ++i) {
            const double x = (static_cast<double>(i) - static_cast<double>(text.size() - 1) / 2) * 1.25;
            solids.prism(letters[next++], sides, letter(text[i], 1.3), -0.35, -0.02,
                         at(x, line == 0 ? 0.62 : -1.15, 0));
        }
    }
    solids.box(edge, {-3.6, -2.4, 0.01}, {3.6, 2.4, 0.3});
    for (int i = 0; i < 12; ++i) {
        const double x = -3.3 + 0.6 * i, y = 2.8 + 0.35 * (i * 5 % 7) / 7.0;
        solids.face(points, std::vector<Vec3>{{x, y, 0}}, {0, 0, -1});
        if (i % 3 == 0) solids.face(strokes, std::vector<Vec3>{{x, y, 0}, {x + 0.5, y + 0.3, 0}}, {0, 0, -1});
    }
    const auto first = static_cast<unsigned>(object.points.size() / 3);
    object.points.insert(object.points.end(), solids.object().points.begin(), solids.object().points.end());
    for (lw_tools::Polygon polygon : solids.object().polygons) {
        for (unsigned& point : polygon.points) point += first;
        object.polygons.push_back(std::move(polygon));
    }
    lw_tools::write_file(directory + "/letters_twenty_surfaces_details.lwo", object.to_bytes());
}

} // namespace samples
