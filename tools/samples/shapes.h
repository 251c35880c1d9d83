// Shapes for sample objects, in the file's coordinates: X right, Y up, Z away from the viewer.
#pragma once
#include <array>
#include <string>
#include <vector>

#include "tools/lwob_writer.h"

namespace samples {

constexpr double pi = 3.14159265358979323846;

struct Vec3 {
    double x = 0, y = 0, z = 0;
};
Vec3 operator+(Vec3 a, Vec3 b);
Vec3 operator-(Vec3 a, Vec3 b);
Vec3 operator*(Vec3 a, double factor);
Vec3 cross(Vec3 a, Vec3 b);
double dot(Vec3 a, Vec3 b);

// Where the next shape goes: its local X, Y, Z axes and its origin.
struct Placement {
    Vec3 origin{}, x{1, 0, 0}, y{0, 1, 0}, z{0, 0, 1};
    Vec3 operator()(Vec3 p) const { return origin + x * p.x + y * p.y + z * p.z; }
    Vec3 direction(Vec3 d) const { return x * d.x + y * d.y + z * d.z; }
};
Placement at(double x, double y, double z);
// The local Y axis laid along the given axis of the world: 'x', 'y' or 'z'.
Placement along(char axis, Vec3 origin = {});

// A point of a turned profile: the surface is that of the piece from here to the next point.
struct ProfilePoint {
    double radius, height;
    int surface;
};

struct Outline {
    std::vector<std::array<double, 2>> points; // x, y; any winding, may be concave
};
Outline star(int tips, double outer, double inner);
Outline letter(char which, double size); // of "LWOBSCENTI": plain capitals, each one polygon without holes

// Builds an object shape by shape. Surfaces are numbered from 1, as the file counts them.
class Model {
public:
    int surface(lw_tools::SurfaceWriter surface); // its number
    unsigned point(Vec3 p);                       // rounded to 0.1 mm, so that every machine writes the same bytes
    // Turns the polygon so that its visible side looks along `outward`.
    lw_tools::Polygon& face(int surface, std::vector<unsigned> points, Vec3 outward);
    lw_tools::Polygon& face(int surface, const std::vector<Vec3>& points, Vec3 outward);

    void box(int surface, Vec3 low, Vec3 high, const Placement& place = {});
    // An outline in X and Y, pulled along Z; the faces at both ends are one polygon each.
    void prism(int surface, int side_surface, const Outline& outline, double z_low, double z_high,
               const Placement& place = {});
    // A profile turned round the local Y axis. Walk it upwards on the outside and downwards on the inside.
    void lathe(const std::vector<ProfilePoint>& profile, int segments, const Placement& place = {});
    void ball(int surface, Vec3 radii, int segments, int rings, const Placement& place = {});
    void tube(int surface, double radius, double y_low, double y_high, int segments, const Placement& place = {});
    void torus(int surface, double ring, double thickness, int segments, int sides, const Placement& place = {});
    // columns x rows quads in X and Y that look along -Z, bent by `depth(x, y)` if given.
    void sheet(int surface, double width, double height, int columns, int rows, const Placement& place = {},
               double (*depth)(double x, double y) = nullptr);

    const lw_tools::ObjectWriter& object() const { return object_; }
    void write(const std::string& path) const;

private:
    Vec3 position(unsigned point) const;
    lw_tools::ObjectWriter object_;
};

// What a surface looks like; the coefficients are written twice, as programs of the time did.
struct Look {
    unsigned red = 200, green = 200, blue = 200;
    double diffuse = 1, specular = 0, reflection = 0, transparency = 0, luminosity = 0;
    unsigned glossiness = 64;
    double refraction = 1;
    double smoothing_angle = 0; // degrees; 0: not smoothed
    unsigned flags = 0;         // besides smoothing
};
lw_tools::SurfaceWriter plain_surface(const std::string& name, const Look& look);

enum TextureFlag : unsigned {
    x_axis = 1,
    y_axis = 2,
    z_axis = 4,
    world_coordinates = 8,
    negative_image = 16,
    pixel_blending = 32,
    antialiasing = 64
};

struct TextureSpec {
    std::string channel = "CTEX", type = "Planar Image Map", image{};
    unsigned flags = z_axis | antialiasing;
    Vec3 size{1, 1, 1}, center{};
    int wrap = 2;         // 0 black outside, 1 clamp, 2 repeat, 3 mirror; both ways
    double value = 1;     // TVAL
    double opacity = 1;   // TOPC, written when below 1
    double amplitude = 0; // TAMP, written when above 0
    std::vector<float> parameters{};
    std::array<unsigned, 3> color{0, 0, 0};
};
void add_texture(lw_tools::SurfaceWriter& surface, const TextureSpec& texture);

} // namespace samples
