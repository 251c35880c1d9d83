// Objects that no program should have written: each ends by its message, and nothing is read or held that shouldn't be.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "lib/import/lw/base/run_state.h"
#include "lib/toolkit/memory.h"
#include "tests/plugin/objects.h"
#include "tests/support/run_plugin.h"

using namespace lw_tools;
using namespace plugin_test;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

const std::vector<float> four_points = {0, 0, 0, 1, 0, 0, 1, 1, 0, 0, 1, 0};

std::string points()
{
    return chunk("PNTS", points_body(four_points));
}

std::string triangle(int surface = 1)
{
    return chunk("POLS", polygons_body({{{0, 1, 2}, surface, {}}}));
}

std::string names(const std::vector<std::string>& list)
{
    return chunk("SRFS", surface_names_body(list));
}

PluginRun convert_bytes(const std::string& bytes, std::vector<Word> options = {})
{
    const TemporaryDirectory directory;
    directory.write("BAD.lwo", bytes);
    const PluginRun run = convert("BAD.lwo", std::move(options));
    EXPECT_FALSE(run.run_left_open);
    return run;
}

std::string corrupt_at(const char* offset)
{
    return std::string("4 Lightwave object file 'bad.lwo' is corrupt at file offset 0x") + offset +
           ". IFF chunk name or block length is bad. Parsing aborted.";
}

TEST(BadObject, HeadersAndTheirMessages)
{
    EXPECT_THAT(convert_bytes(std::string("FORM\0\0\0\0LWOB", 12)).reports,
                ElementsAre("4 Bad FORM length (zero) in Lighwave file bad.lwo"));
    EXPECT_THAT(convert_bytes("FORM\1\1\1\1ILBM").reports,
                ElementsAre("4 File 'bad.lwo' is not in the Lighwave LWOB format"));
    EXPECT_THAT(convert_bytes("FORM").reports, ElementsAre("4 File 'bad.lwo' is not in the Lighwave LWOB format"));
    EXPECT_THAT(convert_bytes("FORM\1\1\1\1LWOB").reports, ElementsAre(corrupt_at("c")));
}

TEST(BadObject, NothingToBuildIsASuccess)
{
    PluginRun run = convert_bytes(form({names({"Hull"}), points()}));
    EXPECT_EQ(run.result, 0);
    EXPECT_THAT(run.reports, ElementsAre("3 Object 'bad' does not have any polygons in it!\n"));
    EXPECT_EQ(num_vertices_read, 0);
    run = convert_bytes(form({names({"Hull"}), triangle()}));
    EXPECT_EQ(run.result, 0);
    EXPECT_THAT(run.reports, ElementsAre("3 Object 'bad' does not have any vertices in it!\n"));
    EXPECT_EQ(convert_bytes(form({})).result, 0);
}

TEST(BadObject, ChunkNamesAndSizes)
{
    // A size of the file's length and 100 passes, one more doesn't; what it claims beyond the file isn't there.
    for (const uint32_t more : {100u, 101u}) {
        Bytes bytes;
        bytes.id("FORM").u32(24).id("LWOB").id("JUNK").u32(32 + more).raw("8 bytes.").u32(0);
        const std::vector<std::string> reports = convert_bytes(bytes.str()).reports;
        EXPECT_THAT(reports, ElementsAre(corrupt_at(more == 100 ? "20" : "14")));
    }
    EXPECT_THAT(convert_bytes(form({chunk("JUN\x7F", Bytes().u8(1))})).reports, ElementsAre(HasSubstr("any polygons")));
    EXPECT_THAT(convert_bytes(form({chunk("JUN\x1F", Bytes())})).reports, ElementsAre(corrupt_at("14")));
    EXPECT_THAT(convert_bytes(form({chunk("JUN\x80", Bytes())})).reports, ElementsAre(corrupt_at("14")));
    EXPECT_THAT(convert_bytes(form({"PNTS\xFF\xFF\xFF\xFE"})).reports, ElementsAre(corrupt_at("14")));
}

TEST(BadObject, UnknownChunksAreSkipped)
{
    const std::string bytes = form({chunk("JUNK", Bytes().raw("odd")), names({"Hull"}), points(), triangle()});
    EXPECT_THAT(convert_bytes(bytes).reports, IsEmpty());
    const PluginRun run = convert_bytes(bytes, {{"print_warnings", 1}});
    EXPECT_EQ(run.result, 0);
    EXPECT_THAT(run.reports, ElementsAre("3 Unknown  sub-chunk found in Lightwave file: name = 'JUNK', size = 3\n"));
}

TEST(BadObject, FormLengthThatDoesntFit)
{
    std::string bytes = form({names({"Hull"}), points(), triangle()});
    bytes[7] = static_cast<char>(bytes[7] + 2);
    const PluginRun run = convert_bytes(bytes);
    EXPECT_EQ(run.result, 1);
    EXPECT_THAT(run.reports, ElementsAre(HasSubstr("is corrupt")));
    EXPECT_EQ(num_polygons_read, 0);
}

TEST(BadObject, PointsOfOddSizes)
{
    PluginRun run = convert_bytes(form({chunk("PNTS", Bytes().u8(1)), names({"Hull"})}));
    EXPECT_THAT(run.reports, ElementsAre(HasSubstr("corrupt"))); // its byte wasn't used up
    run = convert_bytes(form({chunk("PNTS", points_body(four_points).floats({5, 6})), names({"Hull"}), triangle()}));
    EXPECT_EQ(run.result, 0);
    EXPECT_THAT(run.trace, Contains(HasSubstr("\"vertex\",4,[0,0,0,1,0,0,1,1,0,0,1,0],[1,2,3]")));
    run = convert_bytes(form({chunk("PNTS", Bytes()), names({"Hull"}), triangle()}));
    EXPECT_THAT(run.reports, ElementsAre(HasSubstr("any vertices")));
    EXPECT_THAT(convert_bytes(points().insert(0, "FORM\1\1\1\1LWOB").substr(0, 50)).reports,
                ElementsAre("4 File read error encountered while reading from Lightwave file"));
}

TEST(BadObject, SurfaceNumbers)
{
    const auto linked = [](const std::vector<int>& numbers) {
        std::vector<Polygon> polygons;
        for (const int number : numbers) polygons.push_back({{0, 1, 2}, number, {}});
        const PluginRun run = convert_bytes(form({names({"A", "B"}), points(), chunk("POLS", polygons_body(polygons))}),
                                            {{"explode_obj_by_surf_names", 0}});
        const std::string line = calls_of(run, {"Tv_Primitive"}).at(0);
        return line.substr(line.find("\"surfacelink\""));
    };
    EXPECT_EQ(linked({1, 1, 2, 3, 1}), R"("surfacelink",["'A'","'A'","'B'","'B'","'A'"],1,0])");
    EXPECT_EQ(linked({2, 0, 1}), R"("surfacelink",["'B'","'B'","'A'"],1,0])"); // 0 goes with the one before
    EXPECT_EQ(linked({0, 1}), R"("surfacelink",[null,"'A'"],1,0])");
    EXPECT_EQ(linked({32767, 1}), R"("surfacelink",["'B'","'A'"],1,0])");
}

TEST(BadObject, PolygonsWithoutSurfaceNames)
{
    const PluginRun run = convert_bytes(form({points(), triangle(5)}));
    EXPECT_EQ(run.result, 0);
    EXPECT_THAT(run.trace, Contains(HasSubstr("\"surfacelink\",null,1,0]")));
    EXPECT_THAT(calls_of(run, {"Tv_Surfacelink"}), IsEmpty());
    // Names that come too late link nothing.
    EXPECT_EQ(convert_bytes(form({points(), triangle(), names({"A", "B"})})).result, 0);
    EXPECT_EQ(convert_bytes(form({points(), triangle(), chunk("SRFS", Bytes().u16(0))})).result, 0);
}

TEST(BadObject, PointsOutsideTheArray)
{
    const std::string polygons =
        chunk("POLS",
              polygons_body(
                  {{{0, 1, 2}, 1, {}}, {{0, 3, 65535, 4}, 2, {}}, {{900, 901, 902}, 1, {}}, {{900, 901, 902}, 3, {}}}));
    const PluginRun run = convert_bytes(form({names({"A", "B", "C"}), points(), polygons}));
    EXPECT_EQ(run.result, 0);
    EXPECT_THAT(calls_of(run, {"Tv_Primitive"}),
                ElementsAre(HasSubstr("\"vertex\",3,[0,0,0,1,0,0,1,1,0],[1,2,3,4,4,4],1"),
                            HasSubstr("\"vertex\",2,[0,0,0,0,1,0],[1,2,3,3],1")));
}

TEST(BadObject, PolygonChunksThatEndEarly)
{
    const auto primitive = [](const Bytes& pols) {
        const PluginRun run =
            convert_bytes(form({names({"A", "B"}), points(), chunk("POLS", pols)}), {{"explode_obj_by_surf_names", 0}});
        EXPECT_EQ(run.result, 0);
        const std::vector<std::string> lines = calls_of(run, {"Tv_Primitive"});
        return lines.empty() ? std::string() : lines[0];
    };
    const Bytes first = Bytes().u16(3).u16(0).u16(1).u16(2).u16(2);
    // Without a surface word: surface 1.
    EXPECT_THAT(primitive(Bytes(first).u16(3).u16(3).u16(2).u16(1)),
                HasSubstr("[1,2,3,4,3,2],1,\"surfacelink\",[\"'B'\",\"'A'\"]"));
    // Without all its points: the missing ones are 0, which no point has.
    EXPECT_THAT(primitive(Bytes(first).u16(5).u16(3)), HasSubstr("[1,2,3,4,0,0,0,0],1"));
    EXPECT_EQ(num_v_indices_read, 4);
    EXPECT_THAT(primitive(Bytes(first).u16(32767)), HasSubstr("\"verticesperpoly\",[3,32767]"));
    // An odd byte, negative counts, a negative surface with nothing behind it, details that aren't there.
    EXPECT_THAT(primitive(Bytes(first).u8(1)), HasSubstr("\"numpolygons\",1,1"));
    EXPECT_THAT(primitive(Bytes().u16(0xFFF0).u16(1).raw(first)), HasSubstr("\"numpolygons\",1,1"));
    EXPECT_THAT(primitive(Bytes().u16(3).u16(0).u16(1).u16(2).u16(0xFFFF)), HasSubstr("\"numpolygons\",1,1"));
    EXPECT_THAT(primitive(Bytes().u16(3).u16(0).u16(1).u16(2).u16(0xFFFF).u16(9)), HasSubstr("\"numpolygons\",1,1"));
    EXPECT_EQ(primitive(Bytes()), "");
}

// Each chunk once more: what came later counts, and nothing of what came first is used again or lost.
TEST(BadObject, ChunksThatComeTwice)
{
    const PluginRun run = convert_bytes(form({names({"A", "B"}), points(), triangle(2), names({"C", "D"}), points(),
                                              surface_chunk(SurfaceWriter("B")), surface_chunk(SurfaceWriter("D"))}),
                                        {{"explode_obj_by_surf_names", 0}});
    EXPECT_EQ(run.result, 0);
    EXPECT_THAT(run.trace, Contains(HasSubstr("\"surfacelink\",[\"'B'\"],1,0]")));
    EXPECT_EQ(num_surfaces_read, 4);
    EXPECT_EQ(convert_bytes(form({names({"A", "B"}), points(), triangle(2), names({"C", "D"})})).result, 0);
    EXPECT_EQ(convert_bytes(form({names({"A", "B"}), points(), triangle(2), triangle(1)})).result, 0);
}

TEST(BadObject, SurfacesThatDontEndWithTheirChunk)
{
    const auto reports = [](const Bytes& body, const std::string& behind = "") {
        PluginRun run = convert_bytes(form({chunk("SURF", Bytes().text("Hull").raw(body)), behind}));
        EXPECT_EQ(run.result, 1);
        return run.reports;
    };
    const auto error = ElementsAre("4 Error while reading attributes for surface definition Hull");
    EXPECT_THAT(reports(Bytes().raw("DI")), error);                       // no room for a head
    EXPECT_THAT(reports(Bytes().id("JUNK").u16(100).u16(0)), error);      // claims more than there is
    EXPECT_THAT(reports(Bytes().id("DIFF").u16(0xFFFF).u16(0)), error);   //
    EXPECT_THAT(reports(Bytes().id("JUNK").u16(1).u8(0), "more"), error); // its pad lies outside
    EXPECT_THAT(convert_bytes(form({chunk("SURF", Bytes().raw("Hull"))})).reports, ElementsAre(HasSubstr("corrupt")));
    EXPECT_THAT(convert_bytes(form({chunk("SURF", Bytes().raw("Hull")), names({"A"})})).reports,
                ElementsAre(HasSubstr("Error while reading attributes for surface definition HullSRFS")));
}

TEST(BadObject, LongNames)
{
    const std::string name(2000, 'n'), image(3000, 'i');
    const PluginRun run =
        convert_bytes(form({names({name, name}), points(), triangle(2),
                            surface_chunk(mapped(name.c_str(), "Cubic Image Map", 0).text("TIMG", image)),
                            surface_chunk(SurfaceWriter("other").text("RIMG", image).u16("REFL", 256))}));
    EXPECT_EQ(run.result, 0);
    EXPECT_THAT(calls_of(run, {"Tv_Surface"})[0], HasSubstr(std::string(255, 'n') + "'"));
    EXPECT_THAT(calls_of(run, {"Tv_Texture"}), Contains(HasSubstr("'rmap: " + std::string(249, 'i') + "'")));
    EXPECT_EQ(
        convert_bytes(form({names({name, name}), points(), triangle(2)}), {{"make_surface_names_unique", 0}}).result,
        0);
}

TEST(BadObject, TwoEntriesOfOneTextStayTwoSurfaces)
{
    const std::string polygons = chunk("POLS", polygons_body({{{0, 1, 2}, 1, {}}, {{0, 2, 3}, 2, {}}}));
    const PluginRun run =
        convert_bytes(form({names({"A", "A"}), points(), polygons}), {{"make_surface_names_unique", 0}});
    EXPECT_EQ(calls_of(run, {"Tv_Primitive"}).size(), 2u);
    EXPECT_THAT(calls_of(run, {"Tv_Surfacelink"}),
                ElementsAre(HasSubstr("\"'A'\",\"object\",\"'A'\""), HasSubstr("\"'A'\",\"object\",\"'A #2'\"")));
}

ObjectWriter rich_object()
{
    ObjectWriter object = two_triangles();
    object.polygons.push_back({{0, 1, 2, 3}, 3, {{{0, 1, 4}, 1, {}}}});
    object.surfaces = {mapped("Hull", "Cubic Image Map", 1).text("DTEX", "Grid"),
                       SurfaceWriter("Glas").text("RIMG", "sky.ham").u16("REFL", 128).color(1, 2, 3)};
    return object;
}

TEST(BadObject, EveryPrefixEndsInOrder)
{
    const TemporaryDirectory directory;
    // Polygons last: a surface's last value may be cut off unseen, since its bytes are counted by what its head says.
    const ObjectWriter object = rich_object();
    const std::string whole =
        form({names(object.surface_names), surface_chunk(object.surfaces[0]), surface_chunk(object.surfaces[1]),
              chunk("PNTS", points_body(object.points)), chunk("POLS", polygons_body(object.polygons))});
    convert("none");
    const uint64_t held = tv::allocations_held();
    for (std::size_t length = 0; length < whole.size(); ++length) {
        directory.write("part.lwo", whole.substr(0, length));
        const PluginRun run = convert("part.lwo", {{"print_warnings", 1}, {"output_debug_info", 1}});
        EXPECT_EQ(run.result, 1) << length;
        EXPECT_FALSE(run.reports.empty()) << length;
        EXPECT_EQ(run.trace.back(), R"(["Import_IO_Cleanup"])") << length;
        EXPECT_EQ(tv::allocations_held(), held) << length;
    }
}

// The same with a FORM length that ends where the file does, so that the walk may end without seeing the cut.
TEST(BadObject, EveryChunkCutShortByTheForm)
{
    const TemporaryDirectory directory;
    const std::string whole = rich_object().to_bytes();
    for (std::size_t length = 12; length < whole.size(); ++length) {
        std::string bytes = whole.substr(0, length);
        const std::size_t form_length = length - 8;
        bytes[6] = static_cast<char>(form_length >> 8);
        bytes[7] = static_cast<char>(form_length);
        directory.write("part.lwo", bytes);
        const PluginRun run = convert("part.lwo");
        EXPECT_EQ(run.trace[run.trace.size() - (run.result == 0 ? 7 : 1)], R"(["Import_IO_Cleanup"])") << length;
    }
    // Cut within the last polygon, with chunk sizes that the FORM's length agrees with.
    std::string bytes = form({names({"A"}), points(), triangle()});
    bytes.resize(bytes.size() - 4);
    EXPECT_THAT(convert_bytes(bytes).reports, ElementsAre(HasSubstr("is corrupt")));
}

TEST(BadObject, EveryAllocationMayFail)
{
    const TemporaryDirectory directory;
    ObjectWriter object = rich_object();
    for (int i = 0; i < 110; ++i) object.surface_names.push_back("s" + std::to_string(i)); // the table grows
    for (unsigned i = 0; i < 1500; ++i) object.polygon({0, 1, 3}, static_cast<int>(i % 3 + 1));
    directory.write("big.lwo", object.to_bytes());
    uint64_t before = tv::allocations_made();
    const PluginRun whole = convert("big.lwo");
    ASSERT_EQ(whole.result, 0);
    const uint64_t needed = tv::allocations_made() - before;
    const uint64_t held = tv::allocations_held();
    std::vector<std::string> messages;
    for (uint64_t n = 1; n <= needed; ++n) {
        start_fresh();
        tv::fail_allocation(n);
        const PluginRun run = call({{"execute_geometry_converter", 0}, {"filename", "big.lwo"}});
        tv::fail_allocation(0);
        EXPECT_FALSE(run.run_left_open) << n;
        EXPECT_LE(tv::allocations_held(), held) << n;
        EXPECT_GE(tv::allocations_held() + 1, held) << n; // the root directory's string may be what failed
        // Nothing gets lost in silence: what isn't reported didn't matter.
        if (run.reports.empty()) {
            EXPECT_EQ(run.trace, whole.trace) << n;
        }
        const bool fatal = !run.reports.empty() && run.reports.back()[0] == '5';
        if (fatal) {
            EXPECT_EQ(run.result, 1) << n;
            const std::size_t size = run.trace.size();
            EXPECT_EQ(run.trace[size - 2], R"(["Import_IO_Abort_Cleanup"])") << n;
            EXPECT_EQ(run.trace[size - 1], R"(["Import_IO_Cleanup"])") << n;
        }
        for (const std::string& report : run.reports) {
            if (messages.empty() || messages.back() != report) messages.push_back(report);
        }
    }
    EXPECT_THAT(messages, testing::IsSupersetOf({
                              "4 LW_IO_Alloc_File_Read_Buffer(): Could not allocate read buffer memory.",
                              "5 Out of memory while allocating surface names array",
                              "5 Out of memory while re-allocating surface names array",
                              "5 Out of memory while allocating surface information array",
                              "5 Out of memory while allocating vertex array",
                              "5 Out of memory while allocating MESH face indices array",
                              "5 Out of memory while allocating MESH vertices/polygon array",
                              "5 Out of memory while re-allocating MESH face indices array",
                              "5 Out of memory while re-allocating MESH vertices/polygon array",
                              "4 Error while reading attributes for surface definition Hull",
                              "5 Out of memory while copying a name out of the Lightwave file",
                              "5 Out of memory while allocating the vertex tag array",
                              "5 Out of memory while allocating the vertex remapping array",
                              "5 Out of memory while allocating temporary vertex array",
                              "5 Out of memory while allocating temporary MESH face indices array",
                              "5 Out of memory while allocating temporary MESH vertices/polygon array",
                          }));
}

} // namespace
