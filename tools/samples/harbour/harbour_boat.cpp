// The harbour's fishing boat, bow towards +Z, water line at 0: a surface for each channel that an image can act on.
#include <algorithm>
#include <cmath>

#include "tools/samples/harbour/harbour.h"
#include "tools/samples/shapes.h"

namespace samples {

namespace {

constexpr int stations = 14, strips = 6; // of the hull: along it, and from the keel to the gunwale

// Half the hull at station t (0 stern, 1 bow) and strip s (0 keel, 1 gunwale).
Vec3 hull_point(double t, double s)
{
    const double taper = std::max(0.0, t - 0.4) / 0.6;
    const double beam = 1.35 * (1 - std::pow(taper, 2.4)) * (0.88 + 0.12 * std::min(1.0, t * 4));
    const double keel = -0.55 + 0.75 * std::pow(std::max(0.0, t - 0.65) / 0.35, 2);
    const double gunwale = 0.75 + 0.65 * t * t;
    return {beam * std::pow(std::sin(s * pi / 2), 0.7), keel + (gunwale - keel) * (1 - std::cos(s * pi / 2)),
            -4 + 8 * t + 0.5 * t * s};
}

struct BoatSurfaces {
    int paint, bottom, deck, cabin, roof, windows, funnel, brass, mast, net, flag, lifebuoy;
};

lw_tools::SurfaceWriter textured(const std::string& name, const Look& look, const TextureSpec& texture)
{
    lw_tools::SurfaceWriter out = plain_surface(name, look);
    add_texture(out, texture);
    return out;
}

BoatSurfaces make_surfaces(Model& model)
{
    BoatSurfaces s{};
    // Diffuse: rust and salt, seen from the side.
    s.paint = model.surface(textured("Hull paint",
                                     {.red = 30, .green = 84, .blue = 140, .specular = 0.4, .smoothing_angle = 60},
                                     {.channel = "DTEX",
                                      .image = "Toys:Images/Rust.iff",
                                      .flags = x_axis | antialiasing,
                                      .size = {3, 1.6, 4},
                                      .center = {0, 0.4, 0},
                                      .opacity = 0.7}));
    s.bottom = model.surface(
        plain_surface("Hull bottom", {.red = 130, .green = 36, .blue = 30, .specular = 0.2, .smoothing_angle = 60}));
    // Colour and bump: planks from above.
    lw_tools::SurfaceWriter deck =
        textured("Deck", {.red = 190, .green = 150, .blue = 100},
                 {.image = "C:\\NEWTEK\\IMAGES\\PLANKS.IFF", .flags = y_axis | pixel_blending, .size = {2, 1, 2}});
    add_texture(deck,
                {.channel = "BTEX", .image = "IMAGES\\PLANKS", .flags = y_axis, .size = {2, 1, 2}, .amplitude = 0.5});
    s.deck = model.surface(deck);
    s.cabin = model.surface(plain_surface("Cabin", {.red = 236, .green = 232, .blue = 220, .specular = 0.2}));
    s.roof = model.surface(plain_surface("Roof", {.red = 168, .green = 60, .blue = 40, .specular = 0.2}));
    // Luminous: lit panes on each side.
    s.windows = model.surface(textured("Windows", {.red = 30, .green = 36, .blue = 44, .specular = 0.8},
                                       {.channel = "LTEX",
                                        .type = "Cubic Image Map",
                                        .image = "Windows.iff",
                                        .flags = x_axis,
                                        .size = {1.6, 0.55, 2},
                                        .center = {0, 2.05, -1}}));
    s.funnel = model.surface(
        plain_surface("Funnel", {.red = 200, .green = 60, .blue = 40, .specular = 0.3, .smoothing_angle = 40}));
    // Specular: worn brass, wrapped round.
    s.brass = model.surface(textured("Brass",
                                     {.red = 214,
                                      .green = 170,
                                      .blue = 70,
                                      .diffuse = 0.7,
                                      .specular = 0.8,
                                      .reflection = 0.3,
                                      .glossiness = 128,
                                      .smoothing_angle = 40,
                                      .flags = 8},
                                     {.channel = "STEX",
                                      .type = "Cylindrical Image Map",
                                      .image = "Brass.lbm",
                                      .flags = y_axis,
                                      .size = {0.8, 0.3, 0.8},
                                      .center = {0, 3.1, -2.6},
                                      .parameters = {2, 1}}));
    s.mast = model.surface(
        plain_surface("Mast", {.red = 140, .green = 100, .blue = 60, .specular = 0.2, .smoothing_angle = 50}));
    // Transparency: cords with nothing between them.
    s.net = model.surface(textured("Net", {.red = 70, .green = 110, .blue = 80, .flags = 0x100},
                                   {.channel = "TTEX",
                                    .image = "Images/Net.iff",
                                    .flags = x_axis | negative_image,
                                    .size = {1, 1.2, 1.2},
                                    .center = {0, 2.3, 2}}));
    // Colour, once and not repeated.
    s.flag = model.surface(
        textured("Flag", {.red = 255, .green = 255, .blue = 255, .flags = 0x100},
                 {.image = "FLAG.LBM", .flags = x_axis, .size = {1, 0.6, 0.9}, .center = {0, 2.5, -4.35}, .wrap = 0}));
    s.lifebuoy = model.surface(plain_surface("Lifebuoy", {.red = 230, .green = 90, .blue = 30, .smoothing_angle = 60}));
    return s;
}

void hull(Model& model, const BoatSurfaces& s)
{
    std::vector<std::vector<unsigned>> right, left;
    for (int i = 0; i <= stations; ++i) {
        right.emplace_back();
        left.emplace_back();
        for (int k = 0; k <= strips; ++k) {
            const Vec3 p = hull_point(static_cast<double>(i) / stations, static_cast<double>(k) / strips);
            right.back().push_back(model.point(p));
            left.back().push_back(p.x < 0.0001 ? right.back().back() : model.point({-p.x, p.y, p.z}));
        }
    }
    const auto quad = [&](int surface, const std::vector<std::vector<unsigned>>& side, std::size_t i, std::size_t k,
                          Vec3 outward) {
        std::vector<unsigned> corners = {side[i][k], side[i + 1][k], side[i + 1][k + 1], side[i][k + 1]};
        corners.erase(std::unique(corners.begin(), corners.end()), corners.end());
        if (corners.size() > 2) model.face(surface, corners, outward);
    };
    for (std::size_t i = 0; i < stations; ++i) {
        for (std::size_t k = 0; k < strips; ++k) {
            const int surface = k < strips / 2 ? s.bottom : s.paint;
            quad(surface, right, i, k, {1, -0.5, 0.1});
            quad(surface, left, i, k, {-1, -0.5, 0.1});
        }
    }
    std::vector<unsigned> transom = right.front();
    transom.insert(transom.end(), left.front().rbegin(), left.front().rend() - 1);
    model.face(s.paint, transom, {0, 0, -1});
    // The deck, a hand below the gunwale, with the inside of the bulwark round it.
    const auto inside = [](int i, double drop) {
        Vec3 p = hull_point(static_cast<double>(i) / stations, 1);
        return Vec3{std::max(0.0, p.x - 0.06), p.y - drop, p.z - (i == stations ? 0.1 : 0)};
    };
    for (int i = 0; i < stations; ++i) {
        const Vec3 a = inside(i, 0.3), b = inside(i + 1, 0.3), a_top = inside(i, 0), b_top = inside(i + 1, 0);
        const auto mirrored = [](Vec3 p) { return Vec3{-p.x, p.y, p.z}; };
        if (b.x > 0.001) {
            model.face(s.deck, std::vector<Vec3>{a, b, mirrored(b), mirrored(a)}, {0, 1, 0});
        } else {
            model.face(s.deck, std::vector<Vec3>{a, b, mirrored(a)}, {0, 1, 0});
        }
        model.face(s.paint, std::vector<Vec3>{a, b, b_top, a_top}, {-1, 0, 0});
        model.face(s.paint, std::vector<Vec3>{mirrored(a), mirrored(b), mirrored(b_top), mirrored(a_top)}, {1, 0, 0});
    }
}

void upper_works(Model& model, const BoatSurfaces& s)
{
    model.box(s.cabin, {-0.8, 0.4, -2.0}, {0.8, 1.75, 0});
    model.box(s.windows, {-0.78, 1.75, -1.98}, {0.78, 2.3, -0.02});
    model.box(s.roof, {-0.9, 2.3, -2.1}, {0.9, 2.4, 0.1});
    model.lathe({{0.3, 0.5, s.funnel},
                 {0.27, 2.95, s.brass},
                 {0.27, 3.25, s.funnel},
                 {0.26, 3.5, s.funnel},
                 {0.2, 3.5, s.funnel},
                 {0.2, 3.0, s.funnel}},
                20, at(0, 0, -2.6));
    model.tube(s.mast, 0.07, 0.5, 5.2, 10, at(0, 0, 1.2));
    model.tube(s.mast, 0.05, -1.3, 1.3, 8, along('x', {0, 3.9, 1.2}));
    model.tube(s.mast, 0.03, 0.7, 3.0, 8, at(0, 0, -3.9)); // the flag's staff
    model.ball(s.brass, {0.07, 0.07, 0.07}, 10, 6, at(0, 3.05, -3.9));
    for (const double side : {-0.84, 0.84})
        model.torus(s.lifebuoy, 0.24, 0.07, 18, 8, {{side, 1.2, -1}, {0, 0, 1}, {0, 1, 0}, {-1, 0, 0}});

    // Net and flag hang in planes of constant X; both are seen from both sides, so each is there twice.
    for (const int turn : {1, -1}) {
        const Vec3 outward{static_cast<double>(turn), 0, 0};
        const double x = 0.005 * turn;
        model.face(s.net, std::vector<Vec3>{{x, 0.9, 1.5}, {x, 3.7, 1.3}, {x, 1.3, 4.2}}, outward);
        for (int i = 0; i < 6; ++i) { // the flag waves
            const auto wave = [&](int k) { return x + 0.07 * std::sin(k * 1.1); };
            const double z0 = -3.9 - 0.15 * i, z1 = z0 - 0.15;
            model.face(s.flag,
                       std::vector<Vec3>{
                           {wave(i), 2.2, z0}, {wave(i), 2.8, z0}, {wave(i + 1), 2.8, z1}, {wave(i + 1), 2.2, z1}},
                       outward);
        }
    }
}

} // namespace

void write_boat(const std::string& directory)
{
    Model model;
    const BoatSurfaces surfaces = make_surfaces(model);
    hull(model, surfaces);
    upper_works(model, surfaces);
    model.write(directory + "/Boat.lwo");
}

} // namespace samples
