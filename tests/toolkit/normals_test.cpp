// Corner normals: sides, creases, weights, and fans that a file can make arbitrarily large.
#include "lib/toolkit/normals.h"

#include <cmath>
#include <numbers>
#include <vector>

#include "gmock/gmock.h"
#include "gtest/gtest.h"

namespace {

struct Mesh {
    std::vector<float> positions;
    std::vector<int32_t> corners, sizes;

    void add(std::initializer_list<int32_t> polygon)
    {
        corners.insert(corners.end(), polygon);
        sizes.push_back(static_cast<int32_t>(polygon.size()));
    }
    std::vector<float> normals(double degrees)
    {
        std::vector<float> out(3 * corners.size());
        flat =
            tv::corner_normals({positions, corners, sizes}, static_cast<float>(degrees / 180 * std::numbers::pi), out);
        return out;
    }
    std::size_t flat = 0;
};

void expect_normal(const std::vector<float>& normals, std::size_t corner, double x, double y, double z)
{
    const double length = std::sqrt(x * x + y * y + z * z);
    EXPECT_NEAR(normals[3 * corner], x / length, 1e-6) << corner;
    EXPECT_NEAR(normals[3 * corner + 1], y / length, 1e-6) << corner;
    EXPECT_NEAR(normals[3 * corner + 2], z / length, 1e-6) << corner;
}

// Corner points at -1 and 1; point 1 + x + 2y + 4z with x, y, z 0 or 1. Sides clockwise from outside.
Mesh cube()
{
    Mesh mesh;
    for (int i = 0; i < 8; ++i)
        for (const int bit : {1, 2, 4}) mesh.positions.push_back(i & bit ? 1.0f : -1.0f);
    mesh.add({5, 7, 8, 6}); // +z
    mesh.add({1, 2, 4, 3}); // -z
    mesh.add({2, 6, 8, 4}); // +x
    mesh.add({1, 3, 7, 5}); // -x
    mesh.add({3, 4, 8});    // +y, in two triangles
    mesh.add({3, 8, 7});
    mesh.add({1, 5, 6, 2}); // -y
    return mesh;
}

TEST(Normals, PointToTheSideFromWhichCornersRunClockwise)
{
    Mesh mesh;
    mesh.positions = {0, 0, 0, 0, 1, 0, 1, 0, 0};
    mesh.add({1, 2, 3});
    double normal[3];
    tv::polygon_normal({mesh.positions, mesh.corners, mesh.sizes}, 0, 3, normal);
    EXPECT_DOUBLE_EQ(normal[2], 1); // twice the area
    // An arrow head, whose first corner is the inner one: two edges' product would point away.
    Mesh arrow;
    arrow.positions = {0, 0, 0, 1, -1, 0, 0, 2, 0, -1, -1, 0};
    arrow.add({1, 4, 3, 2});
    expect_normal(arrow.normals(0), 0, 0, 0, 1);
}

TEST(Normals, AreSplitAtEdgesSharperThanTheCrease)
{
    Mesh mesh = cube();
    const std::vector<float> sharp = mesh.normals(89.5);
    expect_normal(sharp, 0, 0, 0, 1);
    expect_normal(sharp, 8, 1, 0, 0);
    expect_normal(sharp, 16, 0, 1, 0);
    const std::vector<float> at_the_crease = mesh.normals(90);
    const std::vector<float> smooth = mesh.normals(180);
    for (std::size_t c = 0; c < mesh.corners.size(); ++c) {
        // Weighted by the angle, the side in two triangles counts as one.
        const int32_t p = mesh.corners[c] - 1;
        expect_normal(smooth, c, p & 1 ? 1 : -1, p & 2 ? 1 : -1, p & 4 ? 1 : -1);
        expect_normal(at_the_crease, c, p & 1 ? 1 : -1, p & 2 ? 1 : -1, p & 4 ? 1 : -1);
    }
    EXPECT_EQ(mesh.flat, 0u);
}

TEST(Normals, OfPolygonsWithoutAreaStandUpAndSpoilNoOthers)
{
    Mesh mesh;
    mesh.positions = {0, 0, 0, 1, 0, 0, 0, 0, 1, 3, 0, 0, NAN, 0, 0};
    mesh.add({1, 2, 3}); // clockwise seen from above
    mesh.add({1, 2, 4}); // a line
    mesh.add({1});
    mesh.add({1, 2});
    mesh.add({1, 2, 5});
    mesh.add({2, 2, 2});
    const std::vector<float> normals = mesh.normals(180);
    expect_normal(normals, 0, 0, 1, 0);
    for (std::size_t c = 3; c < mesh.corners.size(); ++c) expect_normal(normals, c, 0, 0, 1);
    EXPECT_EQ(mesh.flat, mesh.corners.size() - 3);
}

TEST(Normals, OfBothSidesOfOneSheetStayApart)
{
    Mesh mesh;
    mesh.positions = {0, 0, 0, 0, 1, 0, 1, 0, 0};
    mesh.add({1, 2, 3});
    mesh.add({3, 2, 1});
    const std::vector<float> apart = mesh.normals(90), joined = mesh.normals(180);
    expect_normal(apart, 0, 0, 0, 1);
    expect_normal(apart, 3, 0, 0, -1);
    expect_normal(joined, 3, 0, 0, -1); // the sum is nothing: its own normal
}

// Corners compared in pairs would take an hour, which no time limit allows.
TEST(Normals, OfHugeFans)
{
    // A disc of triangles round point 1, and a book whose pages share the edge from point 1 to point 2.
    constexpr int32_t count = 50000;
    Mesh disc, book;
    disc.positions = {0, 0, 0};
    book.positions = {0, 0, 0, 0, 0, 1};
    for (int32_t i = 0; i < count; ++i) {
        const double turn = 2 * std::numbers::pi * i / count;
        const float x = static_cast<float>(std::cos(turn)), y = static_cast<float>(std::sin(turn));
        disc.positions.insert(disc.positions.end(), {x, y, 0});
        book.positions.insert(book.positions.end(), {x, y, 0});
        disc.add({1, 2 + (i + 1) % count, 2 + i});
        book.add({1, 2, 3 + i});
    }
    const std::vector<float> flat = disc.normals(30), pages = book.normals(0);
    expect_normal(flat, 0, 0, 0, 1);
    expect_normal(flat, 3 * (count / 2), 0, 0, 1);
    EXPECT_NEAR(std::hypot(pages[0], pages[1]), 1, 1e-5);
    const std::vector<float> first_page(pages.begin(), pages.begin() + 3);
    EXPECT_NEAR(std::abs(first_page[1]), 1, 1e-5); // its own normal: no other page lies within 0 degrees
}

} // namespace
