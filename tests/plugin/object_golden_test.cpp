// Whole objects, from file to toolkit calls. The golden files are read by people: each shows one thing.
#include <gtest/gtest.h>

#include "tests/support/golden.h"
#include "tests/support/run_plugin.h"
#include "tools/lwob_writer.h"

using namespace lw_tools;
using namespace plugin_test;

namespace {

// Two triangles, one a surface, that share an edge; a fifth point that nobody uses.
ObjectWriter two_triangles()
{
    ObjectWriter object;
    object.surface_names = {"Hull", "Glas"};
    for (const auto& [x, y, z] :
         {std::array{0.f, 0.f, 1.f}, {1.f, 0.f, 1.f}, {9.f, 9.f, 9.f}, {1.f, 1.f, 1.f}, {2.f, 1.f, 1.f}})
        object.point(x, y, z);
    object.polygon({0, 1, 3}, 1);
    object.polygon({1, 4, 3}, 2);
    return object;
}

TEST(ObjectGolden, OneSurface)
{
    const TemporaryDirectory directory;
    ObjectWriter object;
    object.surface_names = {"Hull"};
    object.point(0, 0, 0);
    object.point(1, 0, 0);
    object.point(1, 2, 3);
    object.point(0, 2, 3);
    object.polygon({0, 1, 2, 3});
    object.surfaces = {SurfaceWriter("Hull").color(255, 128, 0).u16("FLAG", 0x004).u16("DIFF", 256)};
    directory.write("Ship.lwo", object.to_bytes());
    EXPECT_TRUE(matches_golden("object_one_surface.trace", convert("Ship.lwo").trace));
}

TEST(ObjectGolden, SplitBySurface)
{
    const TemporaryDirectory directory;
    directory.write("ship.lwo", two_triangles().to_bytes());
    EXPECT_TRUE(matches_golden("object_split.trace", convert("ship.lwo").trace));
    EXPECT_TRUE(matches_golden("object_unsplit.trace", convert("ship.lwo", {{"explode_obj_by_surf_names", 0}}).trace));
}

} // namespace
