// Whole objects, from file to toolkit calls. The golden files are read by people: each shows one thing.
#include <gtest/gtest.h>

#include "tests/plugin/objects.h"
#include "tests/support/golden.h"
#include "tests/support/run_plugin.h"

using namespace lw_tools;
using namespace plugin_test;

namespace {

// Every sub-chunk of a surface that isn't a texture's, both forms of each coefficient, the float last.
SurfaceWriter all_attributes()
{
    return SurfaceWriter("Hull")
        .color(255, 128, 0)
        .u16("FLAG", 0x3FF)
        .u16("LUMI", 64)
        .f32("VLUM", 0.125f)
        .u16("DIFF", 256)
        .f32("VDIF", 0.75f)
        .u16("SPEC", 128)
        .f32("VSPC", 0.5f)
        .u16("REFL", 0)
        .f32("VRFL", 0.25f)
        .u16("TRAN", 256)
        .f32("VTRN", 1.5f)
        .u16("GLOS", 301)
        .text("RIMG", "C:\\Pics\\SKY.HAM")
        .u16("RFLT", 7)
        .f32("RSAN", 90.f)
        .f32("RIND", 1.33f)
        .f32("EDGE", 0.25f)
        .f32("SMAN", 0.5f)
        .sub("NEW!", Bytes().raw("odd"))
        .color(1, 2, 3);
}

SurfaceWriter all_channels()
{
    SurfaceWriter surface("Hull");
    surface.vec("TSIZ", 7, 7, 7).text("TIMG", "early.iff"); // nothing to refine yet
    surface.text("CTEX", "Planar Image Map")
        .text("TIMG", "Wood.LBM")
        .sub("TWRP", Bytes().u16(0).u16(3))
        .u16("TFLG", 0x7C)
        .vec("TSIZ", 2, 4, 6)
        .vec("TCTR", 1, 1, -1)
        .vec("TFAL", 1, 2, 3)
        .vec("TVEL", 4, 5, 6)
        .texture_color(255, 0, 51)
        .u16("TVAL", 128)
        .f32("TAMP", 8)
        .u16("TFRQ", 3)
        .f32("TSP0", 1)
        .f32("TFP0", 2)
        .f32("TFP1", 3)
        .f32("TSP1", 4)
        .f32("TSP2", 5)
        .u16("TIP2", 384)
        .f32("TOPC", 0.75f)
        .f32("TAAS", 1)
        .text("TALP", "alpha.iff");
    surface.text("DTEX", "Grid").u16("TVAL", 64).u16("TIP0", 128).f32("TOPC", 1.5f).texture_color(0, 255, 0);
    surface.text("RTEX", "Cubic Image Map").text("TIMG", "never.iff");
    surface.text("LTEX", "Planar Image Map").text("TIMG", "glow.iff").f32("TOPC", -0.25f);
    surface.text("BTEX", "Planar Image Map").text("TIMG", "bumps.iff").f32("TAMP", 3);
    surface.text("TTEX", "Planar Image Map").text("TIMG", "holes.iff").u16("TFLG", 0x10).f32("TOPC", 0.5f);
    surface.text("STEX", "Planar Image Map").text("TIMG", "(NONE)");
    surface.text("STEX", "Planar Image Map").text("TIMG", "shine.iff").u16("TVAL", 256);
    surface.text("CTEX", "Checkerboard");
    return surface;
}

TEST(ObjectGolden, OneSurface)
{
    const TemporaryDirectory directory;
    directory.write("Ship.lwo", square(SurfaceWriter("Hull").u16("FLAG", 0x004)).to_bytes());
    EXPECT_TRUE(matches_golden("object_one_surface.trace", convert("Ship.lwo").trace));
}

TEST(ObjectGolden, SplitBySurface)
{
    const TemporaryDirectory directory;
    directory.write("ship.lwo", two_triangles().to_bytes());
    EXPECT_TRUE(matches_golden("object_split.trace", convert("ship.lwo").trace));
    EXPECT_TRUE(matches_golden("object_unsplit.trace", convert("ship.lwo", {{"explode_obj_by_surf_names", 0}}).trace));
}

TEST(ObjectGolden, DetailPolygonsBecomePlainOnes)
{
    const TemporaryDirectory directory;
    ObjectWriter object = two_triangles();
    object.polygons = {{{0, 1, 3}, 1, {{{1, 4, 3}, 2, {}}, {{0, 4}, 1, {}}, {{0, 1, 4}, -2, {}}}},
                       {{0, 3}, 3, {{{0, 3, 4}, 1, {}}}},
                       {{3, 1, 0}, 9, {}}};
    directory.write("ship.lwo", object.to_bytes());
    const PluginRun run = convert("ship.lwo", {{"explode_obj_by_surf_names", 0}, {"print_warnings", 1}});
    EXPECT_TRUE(matches_golden("object_details.trace", run.trace));
}

TEST(ObjectGolden, SurfaceAttributes)
{
    const TemporaryDirectory directory;
    directory.write("ship.lwo", square(all_attributes()).to_bytes());
    const PluginRun run = convert("ship.lwo", {{"print_warnings", 1}, {"output_debug_info", 1}});
    EXPECT_TRUE(matches_golden("object_attributes.trace",
                               calls_of(run, {"Tv_Surface", "Tv_Texture", "Tv_Determine_Image_File_Type",
                                              "Import_IO_Report_Error", "Tv_Manipulate_IndexedPolygons"})));
    EXPECT_TRUE(matches_golden("object_attributes.debug.txt", directory.read("debuglw.txt")));
}

TEST(ObjectGolden, TextureLayers)
{
    const TemporaryDirectory directory;
    directory.write("ship.lwo", square(all_channels()).to_bytes());
    const PluginRun run = convert("ship.lwo", {{"output_debug_info", 1}});
    EXPECT_TRUE(matches_golden("object_layers.trace",
                               calls_of(run, {"Tv_Surface", "Tv_Texture", "Tv_Determine_Image_File_Type",
                                              "Import_IO_MakeNameUnique", "Tv_Inquire_Surface", "Tv_TxtrParam"})));
    EXPECT_TRUE(matches_golden("object_layers.debug.txt", directory.read("debuglw.txt")));
}

TEST(ObjectGolden, DebugFileOfASplit)
{
    const TemporaryDirectory directory;
    ObjectWriter object = two_triangles();
    const std::string bytes =
        form({chunk("JUNK", Bytes().raw("odd")), chunk("SRFS", surface_names_body({"Hull", "Glas"})),
              chunk("PNTS", points_body(object.points)), chunk("POLS", polygons_body(object.polygons)),
              surface_chunk(SurfaceWriter("Elsewhere"))});
    directory.write("ship.lwo", bytes);
    convert("ship.lwo", {{"output_debug_info", 1}});
    EXPECT_TRUE(matches_golden("object_split.debug.txt", directory.read("debuglw.txt")));
}

} // namespace
