// Projection frames, procedurals, wraps and limits: one line a case.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "lib/services/host.h"
#include "lib/toolkit/scene/scene.h"
#include "tests/plugin/objects.h"
#include "tests/support/run_plugin.h"

using namespace lw_tools;
using namespace plugin_test;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

namespace {

PluginRun convert_square(const SurfaceWriter& surface, std::vector<Word> options = {})
{
    const TemporaryDirectory directory;
    directory.write("ship.lwo", square(surface).to_bytes());
    return convert("ship.lwo", std::move(options));
}

std::string only_line(const PluginRun& run, std::string_view function)
{
    const std::vector<std::string> lines = calls_of(run, {function});
    return lines.size() == 1 ? lines.front() : std::to_string(lines.size()) + " lines";
}

// Size (2, 4, 6), so that each factor shows which side it came from.
struct FrameCase {
    const char* map;
    unsigned flags;
    std::array<float, 3> center; // as in the file
    const char* points;          // of the call, from "origin" on
};

class Projection : public testing::TestWithParam<FrameCase> {};

TEST_P(Projection, Frame)
{
    const FrameCase& c = GetParam();
    const PluginRun run =
        convert_square(mapped("Hull", c.map, c.flags).vec("TCTR", c.center[0], c.center[1], c.center[2]));
    EXPECT_THAT(only_line(run, "Tv_TxtrParam"), HasSubstr(c.points));
}

const char* const planar = "Planar Image Map";
const char* const spherical = "Spherical Image Map";
const char* const cylindrical = "Cylindrical Image Map";
const char* const cubic = "Cubic Image Map";

INSTANTIATE_TEST_SUITE_P(
    All, Projection,
    testing::Values(
        FrameCase{
            planar,
            4,
            {1, 1, -1},
            R"("primitive",1,"origin",[0,-1,4],1,"upoint",[2,-1,4],1,"vpoint",[0,3,4],1,"wpoint",[0,0,1],1,"model","orthographic",1,0])"},
        FrameCase{
            planar, 1, {1, 1, -1}, R"("origin",[2,-1,4],1,"upoint",[2,-1,-2],1,"vpoint",[2,3,4],1,"wpoint",[0,0,1],1)"},
        FrameCase{
            planar, 2, {1, 1, -1}, R"("origin",[0,3,4],1,"upoint",[2,3,4],1,"vpoint",[0,3,-2],1,"wpoint",[0,0,1],1)"},
        FrameCase{planar, 3, {1, 1, -1}, R"("origin",[2,-1,4],1,"upoint",[2,-1,-2],1)"}, // X decides
        FrameCase{planar, 12, {1, 1, -1}, R"("coordsystem","world",1,"origin",[0,-1,4],1)"},
        FrameCase{spherical,
                  2,
                  {5, 0, 0},
                  R"("upoint",[5,0,-3],1,"vpoint",[5,2,0],1,"wpoint",[0,0,1],1,"model","spherical",1,0])"},
        FrameCase{spherical, 1, {5, 1, 1}, R"("origin",[5,1,-1],1,"upoint",[5,-2,-1],1,"vpoint",[6,1,-1],1)"},
        FrameCase{spherical, 4, {5, 1, 1}, R"("origin",[5,1,-1],1,"upoint",[5,-1,-1],1,"vpoint",[5,1,-4],1)"},
        FrameCase{spherical,
                  0,
                  {5, 1, 1},
                  R"("origin",[5,1,-1],1,"upoint",[6,1,-1],1,"vpoint",[5,2,-1],1,"wpoint",[0,0,1],1)"},
        FrameCase{
            cylindrical,
            4,
            {1, 1, 0},
            R"("origin",[1,1,3],1,"upoint",[1,-1,3],1,"vpoint",[1,1,-3],1,"wpoint",[0,0,1],1,"model","cylindrical",1,0])"},
        FrameCase{cylindrical, 1, {1, 1, 1}, R"("origin",[0,1,-1],1,"upoint",[0,-2,-1],1,"vpoint",[2,1,-1],1)"},
        FrameCase{cylindrical, 2, {1, 1, 1}, R"("origin",[1,-1,-1],1,"upoint",[1,-1,-4],1,"vpoint",[1,3,-1],1)"},
        FrameCase{
            cubic,
            0,
            {1, 1, 1},
            R"("origin",[0,-1,-4],1,"upoint",[2,-1,-4],1,"vpoint",[0,3,-4],1,"wpoint",[0,-1,2],1,"model","box",1,0])"}));

TEST(Projection, AxisOfTheFirstTextureProjectionOfTheFirstImageMap)
{
    SurfaceWriter surface("Hull");
    surface.text("DTEX", "Grid").u16("TFLG", 0x02);
    surface.text("RTEX", planar).u16("TFLG", 0x01).vec("TSIZ", 2, 4, 6);
    surface.text("CTEX", cubic).vec("TSIZ", 9, 9, 9);
    EXPECT_THAT(only_line(convert_square(surface), "Tv_TxtrParam"),
                HasSubstr(R"("origin",[-1,2,3],1,"upoint",[1,2,3],1)"));
}

TEST(Projection, NoFrameWithoutImageMapOrAxis)
{
    EXPECT_THAT(calls_of(convert_square(SurfaceWriter("Hull").text("CTEX", "Grid").u16("TFLG", 1)),
                         {"Tv_TxtrParam", "Tv_Texture"}),
                IsEmpty());
    EXPECT_THAT(calls_of(convert_square(mapped("Hull", planar, 0)), {"Tv_TxtrParam"}), IsEmpty());
    EXPECT_THAT(calls_of(convert_square(mapped("Hull", cylindrical, 0x70)), {"Tv_TxtrParam"}), IsEmpty());
    EXPECT_THAT(calls_of(convert_square(mapped("Hull", "planar image map", 1)), {"Tv_TxtrParam"}), IsEmpty());
}

// A second instance's frame comes from the first surface alone in an object that stays whole, and from its own
// surface in one that is split.
TEST(Projection, OfSplitAndUnsplitObjects)
{
    const TemporaryDirectory directory;
    ObjectWriter object = two_triangles();
    object.surfaces = {SurfaceWriter("Hull"), mapped("Glas", cubic, 0)};
    directory.write("ship.lwo", object.to_bytes());
    EXPECT_THAT(only_line(convert("ship.lwo"), "Tv_TxtrParam"), HasSubstr(R"("instance","'Glas'")"));
    EXPECT_THAT(calls_of(convert("ship.lwo", {{"explode_obj_by_surf_names", 0}}), {"Tv_TxtrParam"}), IsEmpty());
}

struct ProceduralCase {
    const char* word;
    const char* texture; // of the Tv_Texture call; null: none is made
};

class Procedural : public testing::TestWithParam<ProceduralCase> {};

TEST_P(Procedural, Texture)
{
    SurfaceWriter surface("Hull");
    surface.color(51, 102, 153).text("RTEX", planar).text("CTEX", GetParam().word).f32("TSP0", 0.5f);
    surface.texture_color(255, 0, 0).vec("TSIZ", 1, 2, 3).vec("TCTR", 4, 5, 6).u16("TFLG", 8);
    const PluginRun run = convert_square(surface);
    const std::vector<std::string> placed = calls_of(run, {"Tv_Surface"});
    const auto scaled = HasSubstr(R"("scale",[1,2,3],"translate",[4,5,-6],"worldspace","enabled","on",0])");
    EXPECT_THAT(calls_of(run, {"Tv_Inquire_Surface"}), ElementsAre(HasSubstr("[0.2")));
    if (GetParam().texture) {
        EXPECT_THAT(only_line(run, "Tv_Texture"), HasSubstr(GetParam().texture));
        EXPECT_THAT(placed, Contains(scaled));
    } else {
        EXPECT_THAT(calls_of(run, {"Tv_Texture"}), IsEmpty());
        EXPECT_THAT(placed, Not(Contains(scaled)));
    }
    EXPECT_THAT(placed, Contains(HasSubstr(std::string(R"("texturelink","'diffuse color: )") + GetParam().word)));
}

const char* const off =
    R"("name","'off'",1,"color1","rgb",[1,1,1],1,"color2","rgb",[0,0,0],1,"param1",1,1,"param2",1,1,0])";

INSTANTIATE_TEST_SUITE_P(
    All, Procedural,
    testing::Values(
        ProceduralCase{
            "Checkerboard",
            R"("name","'checker'",1,"color1","rgb",[1,1,1],1,"color2","rgb",[0.200000003,0.400000006,0.600000024],1,"param1",1,1,"param2",1,1,0])"},
        ProceduralCase{
            "Grid",
            R"("name","'grid'",1,"color1","rgb",[0.200000003,0.400000006,0.600000024],1,"color2","rgb",[1,0,0],1,"param1",0.25,1,"param2",1,1,0])"},
        ProceduralCase{
            "Fractal Noise",
            R"("name","'rawturbulence'",1,"color1","rgb",[1,0,0],1,"color2","rgb",[0.200000003,0.400000006,0.600000024],1,"param1",1.60000002,1,"param2",0.400000006,1,0])"},
        ProceduralCase{"Dots", off}, ProceduralCase{"Marble", off}, ProceduralCase{"Wood", off},
        ProceduralCase{"Underwater", off}, ProceduralCase{"Bump Array", off}, ProceduralCase{"Crust", off},
        ProceduralCase{"Veins", off}, ProceduralCase{"Ripples", nullptr}, ProceduralCase{"Fractal Bumps", nullptr},
        ProceduralCase{"Crumple", nullptr}));

TEST(Layers, WrapsFollowTheProjection)
{
    const auto wraps = [](const char* map, unsigned x, unsigned y) {
        SurfaceWriter surface = mapped("Hull", map, 1);
        surface.sub("TWRP", Bytes().u16(x).u16(y));
        return only_line(convert_square(surface), "Tv_Texture");
    };
    const auto both = [](const char* u, const char* v) {
        return HasSubstr(std::string(R"("wrapu","enabled",")") + u + R"(",1,"wrapv","enabled",")" + v + "\"");
    };
    EXPECT_THAT(wraps(planar, 0, 1), both("off", "off"));
    EXPECT_THAT(wraps(planar, 0, 1), HasSubstr("\"'diffuse color: wood.iff'\""));
    EXPECT_THAT(wraps(planar, 2, 0), both("on", "off"));
    EXPECT_THAT(wraps(cubic, 0x100, 3), both("off", "on"));
    EXPECT_THAT(wraps(cylindrical, 0, 0), both("on", "off"));
    EXPECT_THAT(wraps(spherical, 0, 0), both("on", "on"));
    EXPECT_THAT(wraps(spherical, 0, 0), HasSubstr("\"'diffuse color: wood.iff (wrap)'\""));
}

TEST(Layers, RepeatsOfAnImage)
{
    const auto scales = [](const char* map, float a, float b) {
        SurfaceWriter surface = mapped("Hull", map, 1);
        surface.f32("TFP0", a).f32("TFP1", b);
        std::string found;
        for (const std::string& line : calls_of(convert_square(surface), {"Tv_Surface"})) {
            const std::size_t at = line.find("\"uscale\"");
            if (at != std::string::npos) found += line.substr(at);
        }
        return found;
    };
    EXPECT_EQ(scales(spherical, 2, -4), R"("uscale",0.5,"vscale",-0.25,0])");
    EXPECT_EQ(scales(spherical, 0, 0.000001f), R"("uscale",1,"vscale",1,0])");
    EXPECT_EQ(scales(cylindrical, -4, 2), R"("uscale",-0.25,"vscale",1,0])");
    EXPECT_EQ(scales(planar, 2, 2), R"("uscale",1,"vscale",1,0])");
}

TEST(Surface, ReflectionMapNeedsReflection)
{
    SurfaceWriter dull("Hull"), bright("Hull");
    dull.text("RIMG", "sky.iff").u16("REFL", 0);
    bright.u16("REFL", 128);
    EXPECT_THAT(calls_of(convert_square(dull), {"Tv_Texture"}), IsEmpty());
    EXPECT_THAT(calls_of(convert_square(bright), {"Tv_Texture"}), IsEmpty());
    bright.text("RIMG", "a.iff").text("RIMG", "sky.iff");
    EXPECT_THAT(only_line(convert_square(bright), "Tv_Texture"), HasSubstr("\"'rmap: sky.iff'\""));
}

TEST(Surface, EdgesAndGlossiness)
{
    const auto has = [](const SurfaceWriter& surface, const char* text) {
        for (const std::string& line : calls_of(convert_square(surface), {"Tv_Surface"})) {
            if (line.find(text) != std::string::npos) return true;
        }
        return false;
    };
    const auto edge = [](unsigned flags, float threshold) {
        return SurfaceWriter("Hull").u16("FLAG", flags).f32("EDGE", threshold);
    };
    EXPECT_TRUE(has(edge(0x20, 0.25f), R"("edgecoeff",0.75,"edgeexp",1,"edge","enabled","on",0])"));
    EXPECT_TRUE(has(edge(0x40, 0.25f), R"("edgecoeff",0.25,)"));
    EXPECT_TRUE(has(edge(0x60, 1.5f), R"("edgecoeff",0,)"));
    EXPECT_TRUE(has(edge(0x40, 1.5f), R"("edgecoeff",1,)"));
    EXPECT_FALSE(has(edge(0x08, 0.25f), "edgecoeff"));
    const std::pair<unsigned, int> glossiness[] = {{5, 5}, {6, 6}, {15, 6}, {16, 16}, {300, 300}, {301, 300}};
    for (const auto& [given, kept] : glossiness) {
        EXPECT_TRUE(
            has(SurfaceWriter("Hull").u16("GLOS", given), ("\"shininess\"," + std::to_string(kept) + ",").c_str()));
    }
}

TEST(Surface, SmoothingIsTheLastFlagsAndTheAngleTheSurfacesOwn)
{
    const auto normals = [](const SurfaceWriter& surface, std::vector<Word> options = {}) {
        return calls_of(convert_square(surface, std::move(options)), {"Tv_Manipulate_IndexedPolygons"});
    };
    const SurfaceWriter smooth = SurfaceWriter("Hull").u16("FLAG", 4);
    EXPECT_THAT(normals(smooth), ElementsAre(HasSubstr("89.5")));
    EXPECT_THAT(normals(smooth, {{"smoothing_angle", "45"}}), ElementsAre(HasSubstr(",45,0]")));
    EXPECT_THAT(normals(smooth, {{"compute_normals", 0}}), IsEmpty());
    EXPECT_THAT(normals(SurfaceWriter("Hull").u16("FLAG", 4).u16("FLAG", 0xFFFB)), IsEmpty());
    EXPECT_THAT(normals(SurfaceWriter("Hull").u16("FLAG", 4).f32("SMAN", 1)), ElementsAre(HasSubstr("57.2957802")));
}

TEST(Surface, OutsideTheTableIsSentWithoutLayers)
{
    const TemporaryDirectory directory;
    ObjectWriter object = square(SurfaceWriter("Hull"));
    object.surfaces = {mapped("Elsewhere", cubic, 1)};
    directory.write("ship.lwo", object.to_bytes());
    const PluginRun run = convert("ship.lwo");
    EXPECT_EQ(run.result, 0);
    EXPECT_THAT(calls_of(run, {"Tv_Surface"}), Contains(HasSubstr("\"Tv_Surface\",\"'Elsewhere'\",\"model\"")));
    EXPECT_THAT(calls_of(run, {"Tv_Texture", "Tv_TxtrParam"}), IsEmpty());
}

TEST(Surface, TranslatedNameIsUsedForAllItsCalls)
{
    const TemporaryDirectory directory;
    directory.write("ship.lwo", square(SurfaceWriter("Hull").color(0, 0, 0)).to_bytes());
    start_fresh();
    services::set_translation(Tv_Inquire_Token("surface"), "Hull", "Paint");
    const PluginRun run = call({{"execute_geometry_converter", 0}, {"filename", "ship.lwo"}});
    EXPECT_THAT(calls_of(run, {"Tv_Surface"}),
                ElementsAre(HasSubstr("'Hull'\",0]"), HasSubstr("'Paint'\",\"color\""),
                            HasSubstr("'Paint'\",\"model\""), HasSubstr("'Paint'\",\"opacity\"")));
    services::set_translation(Tv_Inquire_Token("surface"), "Hull", "");
}

} // namespace
