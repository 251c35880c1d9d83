#include <algorithm>
#include <cmath>
#include <functional>
#include <glm/geometric.hpp>
#include <limits>
#include <random>

#include "tests/export/scene_builder.h"

namespace {

// Area of a mesh's triangles along Z: those that turn the wrong way count below 0.
double signed_area(const std::vector<glm::dvec3>& corners)
{
    double area = 0;
    for (std::size_t i = 0; i + 2 < corners.size(); i += 3)
        area += glm::cross(corners[i + 1] - corners[i], corners[i + 2] - corners[i]).z / 2;
    return area;
}

double total_area(const std::vector<glm::dvec3>& corners)
{
    double area = 0;
    for (std::size_t i = 0; i + 2 < corners.size(); i += 3)
        area += glm::length(glm::cross(corners[i + 1] - corners[i], corners[i + 2] - corners[i])) / 2;
    return area;
}

// A polygon in the plane z = 0 as a shape visible from +Z. `outline` runs counter-clockwise seen from there.
Shape flat(const std::vector<std::array<float, 2>>& outline)
{
    Shape shape;
    shape.polygons.emplace_back();
    for (std::size_t i = 0; i < outline.size(); ++i) {
        shape.points.push_back({outline[i][0], outline[i][1], 0});
        shape.polygons[0].insert(shape.polygons[0].begin(), static_cast<int32_t>(i + 1));
    }
    return shape;
}

class Mesh : public Export {
protected:
    // The shape alone, written and read back.
    GltfFile::Corners corners_of(const Shape& shape, float smooth_degrees = 0)
    {
        surface("paint");
        object("thing", shape, "paint", smooth_degrees);
        instance("thing", "thing");
        file = write();
        return file.corners(0);
    }
    GltfFile file;
};

} // namespace

TEST_F(Mesh, FrontFacesTurnCounterClockwise)
{
    const GltfFile::Corners corners = corners_of(triangle_shape());
    EXPECT_NEAR(signed_area(corners.positions), 0.5, 1e-6);
    EXPECT_EQ(corners.normals[0], glm::dvec3(0, 0, 1));

    tv::clear_scene();
    Shape counter_clockwise = triangle_shape();
    std::reverse(counter_clockwise.polygons[0].begin(), counter_clockwise.polygons[0].end());
    counter_clockwise.clockwise = false;
    const GltfFile::Corners same = corners_of(counter_clockwise);
    EXPECT_NEAR(signed_area(same.positions), 0.5, 1e-6);
    EXPECT_EQ(same.normals[0], glm::dvec3(0, 0, 1));
}

TEST_F(Mesh, NormalsOfACubeAreHardBelowItsAngleAndRoundAbove)
{
    const GltfFile::Corners flat_cube = corners_of(cube_shape());
    EXPECT_NEAR(total_area(flat_cube.positions), 24, 1e-5);
    for (std::size_t i = 0; i < flat_cube.positions.size(); i += 3) {
        const glm::dvec3 face = glm::normalize(glm::cross(flat_cube.positions[i + 1] - flat_cube.positions[i],
                                                          flat_cube.positions[i + 2] - flat_cube.positions[i]));
        EXPECT_GT(glm::dot(face, flat_cube.positions[i]), 0.9) << "outside is the front";
        EXPECT_NEAR(glm::dot(face, flat_cube.normals[i]), 1, 1e-6);
    }
    EXPECT_EQ(file.json["accessors"][0]["count"], 24);

    tv::clear_scene();
    corners_of(cube_shape(), 89);
    EXPECT_EQ(file.json["accessors"][0]["count"], 24) << "edges of 90 degrees stay hard";

    tv::clear_scene();
    const GltfFile::Corners round = corners_of(cube_shape(), 91);
    EXPECT_EQ(file.json["accessors"][0]["count"], 8) << "smooth corners are shared";
    for (std::size_t i = 0; i < round.positions.size(); ++i)
        EXPECT_NEAR(glm::dot(round.normals[i], glm::normalize(round.positions[i])), 1, 1e-5);
}

TEST_F(Mesh, ConcavePolygonsKeepTheirAreaAndOutline)
{
    // A star with random radii, seen from its middle: simple, and concave in many places.
    std::mt19937 random(7);
    for (const std::size_t size : {4u, 5u, 8u, 33u, 400u}) {
        std::vector<std::array<float, 2>> outline;
        double area = 0;
        for (std::size_t i = 0; i < size; ++i) {
            const double angle = 2 * M_PI * static_cast<double>(i) / static_cast<double>(size);
            const double radius = 1 + static_cast<double>(random() % 1000) / 250;
            outline.push_back(
                {static_cast<float>(radius * std::cos(angle)), static_cast<float>(radius * std::sin(angle))});
        }
        for (std::size_t i = 0; i < size; ++i) {
            const auto &a = outline[i], &b = outline[(i + 1) % size];
            area += (static_cast<double>(a[0]) * b[1] - static_cast<double>(b[0]) * a[1]) / 2;
        }
        tv::clear_scene();
        const GltfFile::Corners corners = corners_of(flat(outline));
        EXPECT_NEAR(signed_area(corners.positions), area, 1e-4 * area) << size << " corners";
        EXPECT_NEAR(total_area(corners.positions), area, 1e-4 * area) << size << " corners: no triangle is turned over";
        EXPECT_EQ(corners.positions.size(), 3 * (size - 2));
    }
}

TEST_F(Mesh, OddQuadsAreCutWhereTheyHold)
{
    // An arrow head: only the diagonal from the notch to the tip lies inside.
    const GltfFile::Corners arrow = corners_of(flat({{0, 0}, {2, -1}, {0.5f, 0}, {2, 1}}));
    EXPECT_NEAR(signed_area(arrow.positions), 0.5, 1e-6);
    EXPECT_NEAR(total_area(arrow.positions), 0.5, 1e-6);

    // Three corners on a line leave no triangle without area.
    tv::clear_scene();
    const GltfFile::Corners line = corners_of(flat({{0, 0}, {1, 0}, {2, 0}, {0, 1}}));
    EXPECT_NEAR(signed_area(line.positions), 1, 1e-6);
    for (std::size_t i = 0; i + 2 < line.positions.size(); i += 3)
        EXPECT_GT(glm::length(
                      glm::cross(line.positions[i + 1] - line.positions[i], line.positions[i + 2] - line.positions[i])),
                  0.1);

    // Far from the origin and tiny, where single precision has little left.
    tv::clear_scene();
    const GltfFile::Corners tiny = corners_of(flat({{0, 0}, {3e-18f, 0}, {1e-18f, 1e-18f}, {0, 3e-18f}}));
    EXPECT_EQ(tiny.positions.size(), 6u);
}

TEST_F(Mesh, CrossingEdgesGetAPointOfTheirOwn)
{
    // A pentagram: the pentagon in the middle is inside by winding number, and five points are added.
    std::vector<std::array<float, 2>> star;
    for (int i = 0; i < 5; ++i) {
        const double angle = M_PI / 2 + 2 * M_PI * 2 * i / 5;
        star.push_back({static_cast<float>(std::cos(angle)), static_cast<float>(std::sin(angle))});
    }
    const GltfFile::Corners corners = corners_of(flat(star));
    EXPECT_NEAR(signed_area(corners.positions), 1.1225699, 1e-5);
    for (const glm::dvec3& normal : corners.normals) EXPECT_NEAR(normal.z, 1, 1e-6);
}

TEST_F(Mesh, TangledPolygonsAreFilledRoughlyAndLongOnesWell)
{
    // What one damaged number makes of an ordinary mesh. Filled exactly, each of these takes minutes.
    constexpr std::size_t size = 8000;
    const auto share = [](std::size_t i) { return static_cast<double>(i) / size; };
    const std::vector<std::function<std::array<double, 2>(std::size_t)>> tangles = {
        [&](std::size_t i) -> std::array<double, 2> { // a star, each edge crossing nearly all others
            return {std::cos(2 * M_PI * share(i * 3999 % size)), std::sin(2 * M_PI * share(i * 3999 % size))};
        },
        [&](std::size_t i) -> std::array<double, 2> { // to and fro on a line
            return {share(i * 7919 % size), i == 0 ? 1.0 : 0.0};
        },
        [&](std::size_t i) -> std::array<double, 2> { // a comb whose back cuts all its teeth
            return {share(i), static_cast<double>(i % 2) + 1e-3 * share(i * 7919 % size)};
        }};
    for (const auto& point : tangles) {
        std::vector<std::array<float, 2>> outline;
        for (std::size_t i = 0; i < size; ++i)
            outline.push_back({static_cast<float>(point(i)[0]), static_cast<float>(point(i)[1])});
        tv::clear_scene();
        const GltfFile::Corners corners = corners_of(flat(outline));
        EXPECT_LE(corners.positions.size(), 3 * size);
        EXPECT_NEAR(std::abs(signed_area(corners.positions)), total_area(corners.positions), 1e-3) << "all to one side";
        ASSERT_EQ(report.notes.size(), 1u);
        EXPECT_EQ(messages::text(report.notes[0]),
                  "1 polygon filled roughly, as the edges cross each other too often (the first "
                  "in object 'thing')");
    }
    // As long, and as good as any: a wheel with cogs.
    std::vector<std::array<float, 2>> wheel;
    for (std::size_t i = 0; i < size; ++i) {
        const double radius = i % 4 < 2 ? 1 : 0.9;
        wheel.push_back({static_cast<float>(radius * std::cos(2 * M_PI * share(i))),
                         static_cast<float>(radius * std::sin(2 * M_PI * share(i)))});
    }
    tv::clear_scene();
    const GltfFile::Corners corners = corners_of(flat(wheel));
    EXPECT_NEAR(signed_area(corners.positions), M_PI * (1 + 0.81) / 2, 1e-2);
    EXPECT_TRUE(report.notes.empty());
}

TEST_F(Mesh, BadPolygonsAreLeftOutAndCountedOnce)
{
    constexpr float nan = std::numeric_limits<float>::quiet_NaN();
    Shape shape;
    shape.points = {{0, 0, 0}, {0, 1, 0}, {1, 0, 0}, {1, 1, 0}, {nan, 0, 0}, {3e38f, 3e38f, 0}, {2, 0, 0}, {0, 0, 0}};
    shape.polygons = {
        {1, 2, 3},    // good
        {1},          // a star
        {1, 2},       // a line
        {1, 8, 2, 1}, // two places under three numbers
        {1, 2, 9},    // no such point
        {0, 1, 2},    // nor this
        {-5, 1, 2},   // nor this
        {1, 2, 5},    // not a number
        {1, 2, 6},    // beyond what may be added up
        {1, 3, 7},    // three points on a line
        {2, 4, 3},    // good
    };
    const GltfFile::Corners corners = corners_of(shape);
    EXPECT_EQ(corners.positions.size(), 6u);
    EXPECT_NEAR(signed_area(corners.positions), 1, 1e-6);
    ASSERT_EQ(report.notes.size(), 1u);
    EXPECT_EQ(messages::text(report.notes[0]),
              "9 polygons left out: 3 with fewer than three distinct points, 3 with points that "
              "don't exist, 2 with coordinates beyond all bounds, 1 without area (the first in "
              "object 'thing')");
}

TEST_F(Mesh, CornersThatRunOutEndThePrimitive)
{
    surface("paint");
    object("thing", {{{0, 0, 0}, {0, 1, 0}, {1, 0, 0}}, {{1, 2, 3}, {3, 2, 1}}, {}, true}, "paint");
    instance("thing", "thing");
    // What no call can make, and a reader of scenes has to live with all the same.
    auto& primitive = const_cast<tv::Object&>(tv::scene().objects[0]).primitives[0];
    primitive.sizes[1] = 2000000000;
    EXPECT_EQ(write().corners(0).positions.size(), 3u);
    primitive.sizes[0] = -3;
    const GltfFile file_without_mesh = write();
    EXPECT_FALSE(file_without_mesh.json.contains("meshes"));
    EXPECT_TRUE(file_without_mesh.node("thing"));
}

TEST_F(Mesh, SurfacesBecomePrimitivesAndPolygonsWithoutOneGetPaint)
{
    surface("red", {1, 0, 0});
    surface("blue", {0, 0, 1});
    Shape shape = cube_shape();
    shape.surfaces = {"red", "blue", "red", "blue", "red", "blue"};
    object("mixed", shape);
    instance("mixed", "mixed");
    object("bare", triangle_shape());
    instance("bare", "bare");
    const GltfFile written = write();
    const auto& meshes = written.json["meshes"];
    ASSERT_EQ(meshes.size(), 2u);
    ASSERT_EQ(meshes[0]["primitives"].size(), 2u);
    EXPECT_EQ(written.json["materials"][meshes[0]["primitives"][0]["material"].get<int>()]["name"], "red");
    EXPECT_EQ(written.json["materials"][meshes[0]["primitives"][1]["material"].get<int>()]["name"], "blue");
    EXPECT_NEAR(total_area(written.corners(0, 1).positions), 12, 1e-5);
    const auto& paint = written.json["materials"][meshes[1]["primitives"][0]["material"].get<int>()];
    EXPECT_EQ(paint["name"], "default");
    EXPECT_EQ(paint["pbrMetallicRoughness"]["metallicFactor"], 0);
}

TEST_F(Mesh, InstancesShareWhatLooksTheSame)
{
    surface("paint");
    object("part", cube_shape(), "paint");
    for (int i = 0; i < 50; ++i) instance("part " + std::to_string(i), "part");
    EXPECT_EQ(write().json["meshes"].size(), 1u);
    EXPECT_EQ(report.triangles, 12u);
    EXPECT_EQ(report.nodes, 50u);
}

TEST_F(Mesh, IndicesAreShortUpTo65535Vertices)
{
    // Separate triangles: three vertices each, 65535 in all, and then one triangle more.
    const auto component_type = [&](int triangles) {
        tv::clear_scene();
        Shape shape;
        for (int i = 0; i < triangles; ++i) {
            const auto left = static_cast<float>(4 * i);
            for (const auto& [px, py] : {std::pair(0, 0), std::pair(0, 1), std::pair(1, 0)})
                shape.points.push_back({left + static_cast<float>(px), static_cast<float>(py), 0});
            shape.polygons.push_back({3 * i + 1, 3 * i + 2, 3 * i + 3});
        }
        const GltfFile::Corners corners = corners_of(shape);
        EXPECT_NEAR(signed_area(corners.positions), triangles / 2.0, 1e-3 * triangles);
        const auto& primitive = file.json["meshes"][0]["primitives"][0];
        return file.json["accessors"][primitive["indices"].get<std::size_t>()]["componentType"].get<int>();
    };
    EXPECT_EQ(component_type(21845), 5123);
    EXPECT_EQ(component_type(21846), 5125);
}
