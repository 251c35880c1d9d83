// Large objects: polygons that straddle the read buffer's end, arrays that grow, and pieces against a plain reckoning.
#include <random>

#include <gtest/gtest.h>

#include "lib/toolkit/scene/scene.h"
#include "tests/support/run_plugin.h"
#include "tools/lwob_writer.h"

using namespace lw_tools;
using namespace plugin_test;

namespace {

const unsigned point_count = 2000;

// Polygons of 1 to 40 corners; surfaces that come in runs and by turns; every 50th index names no point.
ObjectWriter random_object(unsigned seed, int surfaces, int polygons)
{
    std::mt19937 random(seed);
    const auto below = [&random](unsigned end) { return static_cast<unsigned>(random() % end); };
    ObjectWriter object;
    for (unsigned i = 0; i < point_count; ++i) {
        object.point(static_cast<float>(i), static_cast<float>(below(100)), static_cast<float>(below(100)));
    }
    for (int i = 0; i < surfaces; ++i) object.surface_names.push_back("s" + std::to_string(i));
    int surface = 1;
    for (int i = 0; i < polygons; ++i) {
        std::vector<unsigned> corners(below(20) ? 1 + below(5) : 1 + below(40));
        for (unsigned& corner : corners) corner = below(50) ? below(point_count) : 60000;
        if (below(3) == 0) surface = static_cast<int>(1 + below(static_cast<unsigned>(surfaces) - 1)); // never the last
        object.polygon(std::move(corners), surface);
    }
    return object;
}

const tv::Primitive& primitive_of(const std::string& object)
{
    return tv::scene().objects.at(tv::scene().find(tv::Kind::object, object)).primitives.at(0);
}

tv::Primitive expected_piece(const ObjectWriter& object, int surface)
{
    tv::Primitive piece;
    std::vector<int32_t> number(point_count, 0);
    const auto each_corner = [&](auto take) {
        for (const Polygon& polygon : object.polygons) {
            if (polygon.points.size() < 3 || polygon.surface != surface) continue;
            take(polygon);
        }
    };
    each_corner([&](const Polygon& polygon) {
        piece.sizes.push_back(static_cast<int32_t>(polygon.points.size()));
        for (const unsigned corner : polygon.points) {
            if (corner < point_count) number[corner] = 1;
        }
    });
    int32_t points = 0;
    for (unsigned i = 0; i < point_count; ++i) {
        if (!number[i]) continue;
        number[i] = ++points;
        piece.positions.insert(piece.positions.end(),
                               {object.points[3 * i], object.points[3 * i + 1], -object.points[3 * i + 2]});
    }
    each_corner([&](const Polygon& polygon) {
        for (const unsigned corner : polygon.points) {
            piece.corners.push_back(corner < point_count ? number[corner] : points + 1);
        }
    });
    return piece;
}

TEST(Split, PiecesOfLargeObjects)
{
    const TemporaryDirectory directory;
    for (const unsigned seed : {1u, 2u, 3u}) {
        const int surfaces = seed == 1 ? 2 : seed == 2 ? 7 : 400;
        const ObjectWriter object = random_object(seed, surfaces, 4000);
        directory.write("o.lwo", object.to_bytes());
        ASSERT_EQ(convert("o.lwo").result, 0);
        EXPECT_EQ(tv::scene().find(tv::Kind::object, object.surface_names.back()), tv::no_id);
        for (int surface = 1; surface < surfaces; ++surface) {
            const tv::Primitive expected = expected_piece(object, surface);
            const std::string& name = object.surface_names[static_cast<std::size_t>(surface - 1)];
            if (expected.sizes.empty()) {
                EXPECT_EQ(tv::scene().find(tv::Kind::object, name), tv::no_id) << surface;
                continue;
            }
            const tv::Primitive& piece = primitive_of(name);
            ASSERT_EQ(piece.sizes, expected.sizes) << surface;
            ASSERT_EQ(piece.positions, expected.positions) << surface;
            ASSERT_EQ(piece.corners, expected.corners) << surface;
        }
    }
}

TEST(Split, NotAskedFor)
{
    const TemporaryDirectory directory;
    const ObjectWriter object = random_object(4, 7, 4000);
    directory.write("o.lwo", object.to_bytes());
    ASSERT_EQ(convert("o.lwo", {{"explode_obj_by_surf_names", 0}}).result, 0);
    const tv::Primitive& whole = primitive_of("o");
    std::vector<int32_t> corners;
    std::vector<std::string> surfaces, found;
    for (const Polygon& polygon : object.polygons) {
        if (polygon.points.size() < 3) continue;
        for (const unsigned corner : polygon.points) corners.push_back(static_cast<int32_t>(corner) + 1);
        surfaces.push_back(object.surface_names[static_cast<std::size_t>(polygon.surface - 1)]);
    }
    for (const tv::Id surface : whole.polygon_surface) found.push_back(tv::scene().surfaces.at(surface).name);
    EXPECT_EQ(whole.corners, corners);
    EXPECT_EQ(found, surfaces);
    EXPECT_EQ(whole.positions.size(), 3u * point_count);
}

// Surfaces are counted in 16 bits: from 32,768 on the count is negative, and nothing but the parent is made.
TEST(Split, CountsSurfacesIn16Bits)
{
    const TemporaryDirectory directory;
    for (const std::size_t count : {32767u, 32768u}) {
        ObjectWriter object;
        object.surface_names.assign(count, "s");
        for (int i = 0; i < 4; ++i) object.point(static_cast<float>(i), 0, 0);
        object.polygon({0, 1, 2}, 1);
        object.polygon({1, 2, 3}, 32767);
        object.surfaces = {SurfaceWriter("s")};
        directory.write("o.lwo", object.to_bytes());
        const PluginRun run = convert("o.lwo", {{"make_surface_names_unique", 0}});
        EXPECT_EQ(run.result, 0);
        EXPECT_EQ(calls_of(run, {"Tv_Primitive"}).size(), count == 32767 ? 2u : 0u);
        EXPECT_EQ(calls_of(run, {"Tv_Add_Empty_Node"}).size(), 1u);
    }
}

} // namespace
