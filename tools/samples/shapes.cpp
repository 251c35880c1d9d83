#include "tools/samples/shapes.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>

namespace samples {

Vec3 operator+(Vec3 a, Vec3 b)
{
    return {a.x + b.x, a.y + b.y, a.z + b.z};
}

Vec3 operator-(Vec3 a, Vec3 b)
{
    return {a.x - b.x, a.y - b.y, a.z - b.z};
}

Vec3 operator*(Vec3 a, double factor)
{
    return {a.x * factor, a.y * factor, a.z * factor};
}

Vec3 cross(Vec3 a, Vec3 b)
{
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}

double dot(Vec3 a, Vec3 b)
{
    return a.x * b.x + a.y * b.y + a.z * b.z;
}

Placement at(double x, double y, double z)
{
    Placement place;
    place.origin = {x, y, z};
    return place;
}

Placement along(char axis, Vec3 origin)
{
    switch (axis) {
    case 'x': return {origin, {0, -1, 0}, {1, 0, 0}, {0, 0, 1}};
    case 'z': return {origin, {1, 0, 0}, {0, 0, 1}, {0, -1, 0}};
    default: return {origin, {1, 0, 0}, {0, 1, 0}, {0, 0, 1}};
    }
}

Outline star(int tips, double outer, double inner)
{
    Outline out;
    for (int i = 0; i < 2 * tips; ++i) {
        const double angle = pi / 2 + pi * i / tips, radius = i % 2 ? inner : outer;
        out.points.push_back({radius * std::cos(angle), radius * std::sin(angle)});
    }
    return out;
}

Outline letter(char which, double size)
{
    // On a grid of 4 x 6 cells.
    Outline out;
    switch (which) {
    case 'L': out.points = {{0, 0}, {4, 0}, {4, 1}, {1, 1}, {1, 6}, {0, 6}}; break;
    case 'W':
        out.points = {{0, 6}, {0.8, 0},   {1.6, 0}, {2, 2.4}, {2.4, 0},   {3.2, 0}, {4, 6},
                      {3, 6}, {2.7, 2.6}, {2.3, 5}, {1.7, 5}, {1.3, 2.6}, {1, 6}};
        break;
    case 'S':
        out.points = {{0, 0}, {4, 0}, {4, 3.5}, {1, 3.5}, {1, 5}, {4, 5},
                      {4, 6}, {0, 6}, {0, 2.5}, {3, 2.5}, {3, 1}, {0, 1}};
        break;
    case 'C': out.points = {{0, 0}, {4, 0}, {4, 1}, {1, 1}, {1, 5}, {4, 5}, {4, 6}, {0, 6}}; break;
    case 'E':
        out.points = {{0, 0},   {4, 0},   {4, 1}, {1, 1}, {1, 2.5}, {3, 2.5},
                      {3, 3.5}, {1, 3.5}, {1, 5}, {4, 5}, {4, 6},   {0, 6}};
        break;
    case 'N': out.points = {{0, 0}, {1, 0}, {1, 4}, {3, 0}, {4, 0}, {4, 6}, {3, 6}, {3, 2}, {1, 6}, {0, 6}}; break;
    case 'T': out.points = {{1.5, 0}, {2.5, 0}, {2.5, 5}, {4, 5}, {4, 6}, {0, 6}, {0, 5}, {1.5, 5}}; break;
    case 'I': out.points = {{1.5, 0}, {2.5, 0}, {2.5, 6}, {1.5, 6}}; break;
    default: throw std::logic_error(std::string("no outline for the letter ") + which);
    }
    for (auto& [x, y] : out.points) {
        x = (x - 2) * size / 6;
        y *= size / 6;
    }
    return out;
}

int Model::surface(lw_tools::SurfaceWriter surface)
{
    object_.surface_names.push_back(surface.name());
    object_.surfaces.push_back(std::move(surface));
    return static_cast<int>(object_.surface_names.size());
}

unsigned Model::point(Vec3 p)
{
    const auto rounded = [](double value) { return static_cast<float>(std::round(value * 10000) / 10000 + 0.0); };
    return object_.point(rounded(p.x), rounded(p.y), rounded(p.z));
}

Vec3 Model::position(unsigned point) const
{
    const float* const p = &object_.points.at(3 * std::size_t{point});
    return {p[0], p[1], p[2]};
}

lw_tools::Polygon& Model::face(int surface, std::vector<unsigned> points, Vec3 outward)
{
    // Seen from its visible side a polygon runs clockwise. In the file's left-handed axes that makes the sum of the
    // cross products point to that side.
    Vec3 normal;
    for (std::size_t i = 0; i < points.size(); ++i) {
        normal = normal + cross(position(points[i]), position(points[(i + 1) % points.size()]));
    }
    if (dot(normal, outward) < 0) std::reverse(points.begin(), points.end());
    object_.polygon(std::move(points), surface);
    return object_.polygons.back();
}

lw_tools::Polygon& Model::face(int surface, const std::vector<Vec3>& points, Vec3 outward)
{
    std::vector<unsigned> numbers;
    for (const Vec3 p : points) numbers.push_back(point(p));
    return face(surface, std::move(numbers), outward);
}

void Model::box(int surface, Vec3 low, Vec3 high, const Placement& place)
{
    unsigned corner[8];
    for (unsigned i = 0; i < 8; ++i) {
        corner[i] = point(place({i & 1 ? high.x : low.x, i & 2 ? high.y : low.y, i & 4 ? high.z : low.z}));
    }
    face(surface, {corner[0], corner[2], corner[6], corner[4]}, place.direction({-1, 0, 0}));
    face(surface, {corner[1], corner[3], corner[7], corner[5]}, place.direction({1, 0, 0}));
    face(surface, {corner[0], corner[1], corner[5], corner[4]}, place.direction({0, -1, 0}));
    face(surface, {corner[2], corner[3], corner[7], corner[6]}, place.direction({0, 1, 0}));
    face(surface, {corner[0], corner[1], corner[3], corner[2]}, place.direction({0, 0, -1}));
    face(surface, {corner[4], corner[5], corner[7], corner[6]}, place.direction({0, 0, 1}));
}

void Model::prism(int surface, int side_surface, const Outline& outline, double z_low, double z_high,
                  const Placement& place)
{
    const std::size_t count = outline.points.size();
    std::vector<unsigned> front, back;
    double area = 0; // twice, positive for a counter-clockwise outline
    for (std::size_t i = 0; i < count; ++i) {
        const auto [x, y] = outline.points[i];
        const auto [next_x, next_y] = outline.points[(i + 1) % count];
        area += x * next_y - next_x * y;
        front.push_back(point(place({x, y, z_low})));
        back.push_back(point(place({x, y, z_high})));
    }
    face(surface, front, place.direction({0, 0, -1}));
    face(surface, back, place.direction({0, 0, 1}));
    for (std::size_t i = 0; i < count; ++i) {
        const std::size_t next = (i + 1) % count;
        const double dx = outline.points[next][0] - outline.points[i][0];
        const double dy = outline.points[next][1] - outline.points[i][1];
        const Vec3 outward = area > 0 ? Vec3{dy, -dx, 0} : Vec3{-dy, dx, 0};
        face(side_surface, {front[i], front[next], back[next], back[i]}, place.direction(outward));
    }
}

void Model::lathe(const std::vector<ProfilePoint>& profile, int segments, const Placement& place)
{
    std::vector<std::vector<unsigned>> rings;
    for (const ProfilePoint& at_profile : profile) {
        std::vector<unsigned>& ring = rings.emplace_back();
        for (int i = 0; i < (at_profile.radius > 0 ? segments : 1); ++i) {
            const double angle = 2 * pi * i / segments;
            ring.push_back(point(
                place({at_profile.radius * std::cos(angle), at_profile.height, at_profile.radius * std::sin(angle)})));
        }
    }
    for (std::size_t p = 0; p + 1 < profile.size(); ++p) {
        const double rise = profile[p + 1].height - profile[p].height;
        const double widening = profile[p + 1].radius - profile[p].radius;
        for (int i = 0; i < segments; ++i) {
            const double angle = 2 * pi * (i + 0.5) / segments;
            const Vec3 outward = {rise * std::cos(angle), -widening, rise * std::sin(angle)};
            const auto a = static_cast<std::size_t>(i), b = static_cast<std::size_t>((i + 1) % segments);
            std::vector<unsigned> corners;
            corners.push_back(rings[p][rings[p].size() > 1 ? a : 0]);
            if (rings[p].size() > 1) corners.push_back(rings[p][b]);
            if (rings[p + 1].size() > 1) corners.push_back(rings[p + 1][b]);
            corners.push_back(rings[p + 1][rings[p + 1].size() > 1 ? a : 0]);
            if (corners.size() > 2) face(profile[p].surface, corners, place.direction(outward));
        }
    }
}

void Model::ball(int surface, Vec3 radii, int segments, int rings, const Placement& place)
{
    std::vector<ProfilePoint> profile;
    for (int i = 0; i <= rings; ++i) {
        const double angle = -pi / 2 + pi * i / rings;
        profile.push_back({i == 0 || i == rings ? 0 : std::cos(angle), std::sin(angle), surface});
    }
    lathe(profile, segments, {place.origin, place.x * radii.x, place.y * radii.y, place.z * radii.z});
}

void Model::tube(int surface, double radius, double y_low, double y_high, int segments, const Placement& place)
{
    lathe({{radius, y_low, surface}, {radius, y_high, surface}}, segments, place);
}

void Model::torus(int surface, double ring, double thickness, int segments, int sides, const Placement& place)
{
    std::vector<unsigned> points;
    const auto offset = [&](int i, int k) {
        const double turn = 2 * pi * i / segments, roll = 2 * pi * k / sides;
        return std::array<Vec3, 2>{
            Vec3{ring * std::cos(turn), ring * std::sin(turn), 0},
            Vec3{std::cos(turn) * std::cos(roll), std::sin(turn) * std::cos(roll), std::sin(roll)}};
    };
    for (int i = 0; i < segments; ++i) {
        for (int k = 0; k < sides; ++k) {
            const auto [middle, out] = offset(i, k);
            points.push_back(point(place(middle + out * thickness)));
        }
    }
    const auto number = [&](int i, int k) {
        return points[static_cast<std::size_t>((i % segments) * sides + k % sides)];
    };
    for (int i = 0; i < segments; ++i) {
        for (int k = 0; k < sides; ++k) {
            face(surface, {number(i, k), number(i + 1, k), number(i + 1, k + 1), number(i, k + 1)},
                 place.direction(offset(i, k)[1] + offset(i + 1, k + 1)[1]));
        }
    }
}

void Model::sheet(int surface, double width, double height, int columns, int rows, const Placement& place,
                  double (*depth)(double x, double y))
{
    std::vector<unsigned> points;
    for (int row = 0; row <= rows; ++row) {
        for (int column = 0; column <= columns; ++column) {
            const double x = width * (static_cast<double>(column) / columns - 0.5);
            const double y = height * (static_cast<double>(row) / rows - 0.5);
            points.push_back(point(place({x, y, depth ? depth(x, y) : 0})));
        }
    }
    for (int row = 0; row < rows; ++row) {
        for (int column = 0; column < columns; ++column) {
            const auto first = static_cast<std::size_t>(row * (columns + 1) + column);
            const std::size_t above = first + static_cast<std::size_t>(columns) + 1;
            face(surface, {points[first], points[above], points[above + 1], points[first + 1]},
                 place.direction({0, 0, -1}));
        }
    }
}

void Model::write(const std::string& path) const
{
    if (object_.points.size() > 3 * 65536) throw std::logic_error(path + " has more points than indices can name");
    lw_tools::write_file(path, object_.to_bytes());
}

lw_tools::SurfaceWriter plain_surface(const std::string& name, const Look& look)
{
    const auto both = [](lw_tools::SurfaceWriter& out, const char* whole, const char* exact, double value) {
        out.u16(whole, static_cast<unsigned>(std::lround(value * 256)));
        out.f32(exact, static_cast<float>(value));
    };
    lw_tools::SurfaceWriter out(name);
    out.color(look.red, look.green, look.blue);
    out.u16("FLAG", look.flags | (look.smoothing_angle > 0 ? 4u : 0u));
    if (look.luminosity > 0) both(out, "LUMI", "VLUM", look.luminosity);
    both(out, "DIFF", "VDIF", look.diffuse);
    if (look.specular > 0) {
        both(out, "SPEC", "VSPC", look.specular);
        out.u16("GLOS", look.glossiness);
    }
    if (look.reflection > 0) both(out, "REFL", "VRFL", look.reflection);
    if (look.transparency > 0) {
        both(out, "TRAN", "VTRN", look.transparency);
        out.f32("RIND", static_cast<float>(look.refraction));
    }
    if (look.smoothing_angle > 0) {
        // In radians, rounded: the last bit of pi / 180 is not to depend on a compiler.
        out.f32("SMAN", static_cast<float>(std::round(look.smoothing_angle * pi / 180 * 1e5) / 1e5));
    }
    return out;
}

void add_texture(lw_tools::SurfaceWriter& surface, const TextureSpec& texture)
{
    const auto vec = [&](const char* id, Vec3 v) {
        surface.vec(id, static_cast<float>(v.x), static_cast<float>(v.y), static_cast<float>(v.z));
    };
    surface.text(texture.channel, texture.type);
    if (!texture.image.empty()) surface.text("TIMG", texture.image);
    const auto wrap = static_cast<unsigned>(texture.wrap);
    surface.sub("TWRP", lw_tools::Bytes().u16(wrap).u16(wrap));
    surface.u16("TFLG", texture.flags);
    vec("TSIZ", texture.size);
    vec("TCTR", texture.center);
    if (texture.color != std::array<unsigned, 3>{}) {
        surface.texture_color(texture.color[0], texture.color[1], texture.color[2]);
    }
    surface.u16("TVAL", static_cast<unsigned>(std::lround(texture.value * 256)));
    if (texture.amplitude > 0) surface.f32("TAMP", static_cast<float>(texture.amplitude));
    for (std::size_t i = 0; i < texture.parameters.size(); ++i) {
        const bool image = texture.type.ends_with("Image Map");
        surface.f32((image ? "TFP" : "TSP") + std::to_string(i), texture.parameters[i]);
    }
    if (texture.opacity < 1) surface.f32("TOPC", static_cast<float>(texture.opacity));
}

} // namespace samples
