// Where a picture lies, told as a viewer sees it: a point to the viewer's right of another must have the larger u, one
// above it the smaller v. Frames are those that an importer makes of a map of size (2, 4, 6) about a centre.
#include "export/gltf/material/projection_uv.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>

using gltf::make_projector;
using gltf::project_triangle;
using gltf::Uv;
using gltf::UvProjector;
using tv::ProjectionModel;
using tv::TextureProjection;

namespace {

using Point = glm::dvec3;

tv::Vec3 added(const tv::Vec3& a, const tv::Vec3& b)
{
    return {a[0] + b[0], a[1] + b[1], a[2] + b[2]};
}

TextureProjection frame(ProjectionModel model, const tv::Vec3& o, const tv::Vec3& u, const tv::Vec3& v,
                        const tv::Vec3& w = {0, 0, 1})
{
    TextureProjection made;
    made.enabled = true;
    made.model = model;
    made.origin = o;
    made.upoint = added(o, u);
    made.vpoint = added(o, v);
    made.wpoint = model == ProjectionModel::box ? added(o, w) : w;
    return made;
}

// One point's coordinates, by a triangle small enough to lie on one side of everything.
Uv at(const TextureProjection& projection, const Point& p, const Point& normal = {0, 0, 1})
{
    std::array<Uv, 3> out;
    project_triangle(make_projector(projection), {p, p, p}, normal, out);
    return out[0];
}

std::array<Uv, 3> triangle(const TextureProjection& projection, const Point& a, const Point& b, const Point& c)
{
    std::array<Uv, 3> out;
    project_triangle(make_projector(projection), {a, b, c}, {0, 0, 1}, out);
    return out;
}

void expect_uv(const Uv& uv, double u, double v, const char* where)
{
    EXPECT_NEAR(uv.u, u, 1e-6) << where;
    EXPECT_NEAR(uv.v, v, 1e-6) << where;
}

// Centre (1, 1, 1), size (2, 4, 6).
const TextureProjection planar_x = frame(ProjectionModel::orthographic, {2, -1, 4}, {0, 0, -6}, {0, 4, 0});
const TextureProjection planar_y = frame(ProjectionModel::orthographic, {0, 3, 4}, {2, 0, 0}, {0, 0, -6});
const TextureProjection planar_z = frame(ProjectionModel::orthographic, {0, -1, 4}, {2, 0, 0}, {0, 4, 0});

// Centre (0, 0, 0), size (2, 4, 6).
const TextureProjection cylinder_x = frame(ProjectionModel::cylindrical, {-1, 0, 0}, {0, -3, 0}, {2, 0, 0});
const TextureProjection cylinder_y = frame(ProjectionModel::cylindrical, {0, -2, 0}, {0, 0, -3}, {0, 4, 0});
const TextureProjection cylinder_z = frame(ProjectionModel::cylindrical, {0, 0, 3}, {0, -2, 0}, {0, 0, -6});
const TextureProjection sphere_x = frame(ProjectionModel::spherical, {0, 0, 0}, {0, -3, 0}, {1, 0, 0});
const TextureProjection sphere_y = frame(ProjectionModel::spherical, {0, 0, 0}, {0, 0, -3}, {0, 2, 0});
const TextureProjection sphere_z = frame(ProjectionModel::spherical, {0, 0, 0}, {0, -2, 0}, {0, 0, -3});
const TextureProjection box = frame(ProjectionModel::box, {-1, -2, -3}, {2, 0, 0}, {0, 4, 0}, {0, 0, 6});

} // namespace

TEST(Planar, CornersOfThePicture)
{
    expect_uv(at(planar_z, {0, -1, 4}), 0, 1, "lower left");
    expect_uv(at(planar_z, {2, 3, -50}), 1, 0, "upper right, any depth");
    expect_uv(at(planar_z, {1, 1, 1}), 0.5, 0.5, "centre");
    expect_uv(at(planar_z, {5, -5, 0}), 2.5, 2, "outside it goes on");
    // From +X, up is +Y and right is -Z. From above, right is +X and up is -Z.
    expect_uv(at(planar_x, {9, -1, 4}), 0, 1, "x: lower left");
    expect_uv(at(planar_x, {9, 3, -2}), 1, 0, "x: upper right");
    expect_uv(at(planar_y, {0, 9, 4}), 0, 1, "y: lower left");
    expect_uv(at(planar_y, {2, 9, -2}), 1, 0, "y: upper right");
}

TEST(Planar, SkewedFrameIsLaidAsItStands)
{
    const TextureProjection skewed = frame(ProjectionModel::orthographic, {0, 0, 0}, {2, 0, 0}, {1, 1, 0});
    expect_uv(at(skewed, {1, 1, 0}), 0, 0, "end of V");
    expect_uv(at(skewed, {3, 1, 0}), 1, 0, "end of U and V");
}

TEST(Cylindrical, UprightSeenFromTheFront)
{
    expect_uv(at(cylinder_y, {0, 0, 5}), 0.5, 0.5, "front, the picture's middle");
    expect_uv(at(cylinder_y, {5, 0, 0}), 0.75, 0.5, "the viewer's right");
    expect_uv(at(cylinder_y, {-5, 0, 0}), 0.25, 0.5, "the viewer's left");
    expect_uv(at(cylinder_y, {0, 2, 5}), 0.5, 0, "top");
    expect_uv(at(cylinder_y, {0, -2, 5}), 0.5, 1, "bottom");
    EXPECT_NEAR(std::fmod(at(cylinder_y, {0, 0, -5}).u, 1), 0, 1e-6) << "the seam is at the back";
}

TEST(Cylindrical, LyingAxes)
{
    // X: the picture's up is +X; seen from above, its middle, -Z lies to the left of +Z when +X is up.
    expect_uv(at(cylinder_x, {1, 5, 0}), 0.5, 0, "x: top of the picture, middle");
    expect_uv(at(cylinder_x, {-1, 0, 5}), 0.75, 1, "x: right");
    expect_uv(at(cylinder_x, {0, 0, -5}), 0.25, 0.5, "x: left");
    // Z: the picture's up is -Z; seen from above with -Z up, +X is to the right.
    expect_uv(at(cylinder_z, {0, 5, -3}), 0.5, 0, "z: top of the picture, middle");
    expect_uv(at(cylinder_z, {5, 0, 3}), 0.75, 1, "z: right");
    expect_uv(at(cylinder_z, {-5, 0, 0}), 0.25, 0.5, "z: left");
}

TEST(Spherical, AllAxes)
{
    expect_uv(at(sphere_y, {0, 0, 7}), 0.5, 0.5, "y: front");
    expect_uv(at(sphere_y, {7, 0, 0}), 0.75, 0.5, "y: right");
    expect_uv(at(sphere_y, {0, 7, 7}), 0.5, 0.25, "y: 45 degrees up");
    expect_uv(at(sphere_y, {0, -3, 0}), 0.5, 1, "y: lower pole");
    expect_uv(at(sphere_x, {0, 7, 0}), 0.5, 0.5, "x: above, the middle");
    expect_uv(at(sphere_x, {7, 7, 0}), 0.5, 0.25, "x: up is +X");
    expect_uv(at(sphere_x, {0, 0, 7}), 0.75, 0.5, "x: right");
    expect_uv(at(sphere_z, {0, 7, -7}), 0.5, 0.25, "z: up is -Z");
    expect_uv(at(sphere_z, {7, 0, 0}), 0.75, 0.5, "z: right");
}

TEST(Cubic, EachSideReadsTheRightWayRoundFromOutside)
{
    // Normal, the side's lower left corner as one sees it from outside, and its upper right one.
    const struct {
        const char* side;
        Point normal, lower_left, upper_right;
    } sides[] = {
        {"front", {0, 0, 1}, {-1, -2, 3}, {1, 2, 3}},    {"back", {0, 0, -2}, {1, -2, -3}, {-1, 2, -3}},
        {"right", {3, 0, 0}, {1, -2, 3}, {1, 2, -3}},    {"left", {-1, 0, 0}, {-1, -2, -3}, {-1, 2, 3}},
        {"top", {0, 1, 0}, {-1, 2, 3}, {1, 2, -3}},      {"bottom", {0, -1, 0}, {-1, -2, -3}, {1, -2, 3}},
        {"oblique", {1, 1, 1}, {-1, -2, 9}, {1, 2, -9}}, // undecided: the front
    };
    for (const auto& [side, normal, lower_left, upper_right] : sides) {
        expect_uv(at(box, lower_left, normal), 0, 1, side);
        expect_uv(at(box, upper_right, normal), 1, 0, side);
    }
}

TEST(Cubic, FlatInOneDirection)
{
    const TextureProjection flat = frame(ProjectionModel::box, {0, 0, 0}, {2, 0, 0}, {0, 4, 0}, {0, 0, 0});
    expect_uv(at(flat, {2, 4, 0}, {0, 0, 1}), 1, 0, "front");
    expect_uv(at(flat, {2, 4, 0}, {1, 0, 0}), 1, 0, "right: no width, but no smear either");
}

TEST(Seam, CornersComeOutOnOneSide)
{
    for (const TextureProjection& round : {cylinder_y, sphere_y}) {
        // From the back: -X is to the right there, so u rises from x = 1 to x = -1 and goes beyond 1.
        const auto [a, b, c] = triangle(round, {1, 0, -3}, {-1, 0, -3}, {-1, 1, -3});
        EXPECT_LT(a.u, 1);
        EXPECT_GT(a.u, 0.9);
        EXPECT_NEAR(b.u - a.u, 2 * std::atan2(1, 3) / (2 * M_PI), 1e-6);
        EXPECT_NEAR(c.u, b.u, 1e-6);
    }
    const auto [a, b, c] = triangle(cylinder_y, {0, 0, -3}, {1, 0, -3}, {1, 1, -3}); // begins on the seam itself
    EXPECT_NEAR(a.u, 1, 1e-6);
    EXPECT_NEAR(b.u, c.u, 1e-6);
    EXPECT_GT(b.u, 0.9);
    const auto [d, e, f] = triangle(cylinder_y, {-1, 0, -3}, {0, 0, -3}, {-1, 1, -3});
    EXPECT_NEAR(e.u, 0, 1e-6);
    EXPECT_LT(d.u, 0.1);
    EXPECT_LT(f.u, 0.1);
}

TEST(Pole, TakesTheMiddleOfTheOthers)
{
    const auto cap = triangle(sphere_y, {1, 1, 1}, {-1, 1, 1}, {0, 2, 0}); // 0.625 and 0.375
    expect_uv(cap[2], 0.5, 0, "front of the cap");
    const auto back = triangle(sphere_y, {0, 2, 0}, {1, 1, -1}, {-1, 1, -1}); // across the seam: 0.875 and 1.125
    EXPECT_NEAR(back[0].u, 1, 1e-6);
    const auto disc = triangle(cylinder_y, {0, 2, 0}, {0, 2, 0}, {-1, 2, 0});
    EXPECT_NEAR(disc[0].u, 0.25, 1e-6) << "the only corner with a direction decides";
    const auto on_axis = triangle(cylinder_y, {0, 0, 0}, {0, 1, 0}, {0, 2, 0});
    expect_uv(on_axis[0], 0.5, 0.5, "no direction at all");
    // Rounding far from the origin is no direction.
    const TextureProjection far = frame(ProjectionModel::spherical, {1e6f, 0, 0}, {0, 0, -3}, {0, 2, 0});
    const auto far_cap = triangle(far, {1e6 + 1, 1, 1}, {1e6 - 1, 1, 1}, {1e6 + 0.06, 2, 0});
    EXPECT_NEAR(far_cap[2].u, 0.5, 1e-6);
}

TEST(Frames, WithoutExtentAreNotUsable)
{
    constexpr float nan = std::numeric_limits<float>::quiet_NaN(), inf = std::numeric_limits<float>::infinity();
    for (const ProjectionModel model : {ProjectionModel::orthographic, ProjectionModel::spherical,
                                        ProjectionModel::cylindrical, ProjectionModel::box}) {
        const TextureProjection bad[] = {
            frame(model, {0, 0, 0}, {0, 0, 0}, {0, 1, 0}, {0, 0, 0}), frame(model, {0, 0, 0}, {1, 0, 0}, {2, 0, 0}),
            frame(model, {nan, 0, 0}, {1, 0, 0}, {0, 1, 0}),          frame(model, {0, 0, 0}, {inf, 0, 0}, {0, 1, 0}),
            frame(model, {0, 0, 0}, {1, 0, 0}, {0, nan, 0}),          frame(model, {0, 0, 0}, {0, 0, 0}, {0, 0, 0})};
        for (const TextureProjection& projection : bad) {
            EXPECT_FALSE(make_projector(projection).usable);
            expect_uv(at(projection, {1, 2, 3}), 0, 0, "unusable");
        }
        const float tiny = 1e-40f, huge = 1e38f;
        for (const float size : {tiny, huge})
            EXPECT_TRUE(make_projector(frame(model, {0, 0, 0}, {size, 0, 0}, {0, size, 0}, {0, 0, size})).usable);
    }
    // The other models' wpoint has no meaning, whatever it holds.
    TextureProjection without_w = planar_z;
    without_w.wpoint = {nan, nan, nan};
    EXPECT_TRUE(make_projector(without_w).usable);
}

TEST(Values, AreAlwaysNumbersWithinBounds)
{
    constexpr double inf = std::numeric_limits<double>::infinity(), nan = std::numeric_limits<double>::quiet_NaN();
    const double values[] = {0, -0.0, 1, -3, 1e-300, 1e30, -1e38, 1e200, inf, -inf, nan};
    const float tiny = 1e-40f;
    for (const TextureProjection& projection :
         {planar_x, planar_y, cylinder_x, cylinder_y, sphere_y, sphere_z, box,
          frame(ProjectionModel::orthographic, {0, 0, 0}, {tiny, 0, 0}, {0, tiny, 0}),
          frame(ProjectionModel::box, {0, 0, 0}, {tiny, 0, 0}, {0, tiny, 0}, {0, 0, tiny})}) {
        const UvProjector projector = make_projector(projection);
        for (const double x : values)
            for (const double y : values)
                for (const double z : values) {
                    std::array<Uv, 3> out;
                    project_triangle(projector, {{{x, y, z}, {z, x, y}, {1, 2, y}}}, {y, z, x}, out);
                    for (const Uv& uv : out) {
                        ASSERT_TRUE(std::abs(uv.u) <= 1e6f) << x << ' ' << y << ' ' << z;
                        ASSERT_TRUE(std::abs(uv.v) <= 1e6f) << x << ' ' << y << ' ' << z;
                    }
                }
    }
}
