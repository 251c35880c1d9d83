// The host's side of the plug-in: commands, option words, the file test, the frame of a run.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "lib/import/implugin.h"
#include "lib/import/lw/base/option_variables.h"
#include "lib/import/lw/ntdll/library.h"
#include "lib/toolkit/calls/environment.h"
#include "lib/toolkit/memory.h"
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

std::string good_object()
{
    return square(SurfaceWriter("Hull")).to_bytes();
}

TEST(EntryPoint, EmptyListsDoNothing)
{
    int32_t result = 77;
    Tavrin_Plugin_EntryPoint(nullptr, nullptr, &result, nullptr);
    EXPECT_EQ(result, 0);
    char empty[] = "", behind[] = "validate_header";
    char* names[] = {empty, behind, nullptr};
    void* values[] = {nullptr, nullptr, nullptr};
    result = 77;
    Tavrin_Plugin_EntryPoint(names, values, &result, nullptr);
    EXPECT_EQ(result, 0);
}

TEST(EntryPoint, ValidateHeader)
{
    const TemporaryDirectory directory;
    directory.write("o.lwo", good_object());
    directory.write("s.lws", "LWSC");
    directory.write("zero.lwo", std::string("FORM\0\0\0\0LWOB", 12));
    directory.write("picture.iff", "FORM\1\1\1\1ILBM");
    directory.write("text.txt", "LWS");
    directory.write("empty", "");
    const std::pair<const char*, int> cases[] = {{"o.lwo", 1},        {"s.lws", 1},     {"zero.lwo", -2}, {"gone", -1},
                                                 {"picture.iff", -2}, {"text.txt", -2}, {"empty", -2}};
    for (const auto& [file, code] : cases) {
        EXPECT_EQ(call({{"parent_hInstance", 5}, {"what", 1}, {"validate_header", file}, {"shutdown", 0}}).result, code)
            << file;
        const PluginRun second = call({{"execute_geometry_converter", 0},
                                       {"filename", "gone.lwo"},
                                       {"validate_header_2", file},
                                       {"compute_normals", 9}});
        EXPECT_EQ(second.result, code) << file;
        EXPECT_THAT(second.toolkit, IsEmpty());
    }
    EXPECT_EQ(lw_compute_normals, 1); // words behind the test aren't read
    EXPECT_EQ(call({{"validate_header", "o.lwo"}, {"validate_header", "gone"}}).result, -1);
    EXPECT_EQ(call({{"validate_header", 0}}).result, -1);
}

TEST(EntryPoint, FileTestWithoutMemory)
{
    const TemporaryDirectory directory;
    directory.write("o.lwo", good_object());
    tv::fail_allocation(1);
    const PluginRun run = call({{"validate_header", "o.lwo"}});
    tv::fail_allocation(0);
    EXPECT_EQ(run.result, -1);
    EXPECT_THAT(run.reports, ElementsAre("4 LW_IO_Alloc_File_Read_Buffer(): Could not allocate read buffer memory."));
}

TEST(EntryPoint, InitializeReadsTheOptionsFileOverTheDefaults)
{
    const TemporaryDirectory directory;
    directory.write("plug/imp_lw.ini", "print_warnings = 1\nsmoothing_angle = 30\n");
    start_fresh();
    int window = 0;
    const std::string plugin_place = directory.path() + "/plug/";
    EXPECT_EQ(call({{"parent_hWnd", reinterpret_cast<intptr_t>(&window)}, {"initialize", plugin_place}}).result, 0);
    EXPECT_EQ(parent_hwnd, &window);
    EXPECT_EQ(plugin_place, plugin_directory);
    EXPECT_EQ(lw_print_warnings, 1);
    EXPECT_EQ(lw_smoothing_angle, 30.0f);
    EXPECT_STREQ(lw_newtek_root_directory, "c:\\");
    lw_init_import_variables();
    EXPECT_EQ(lw_smoothing_angle, 30.0f);
    call({{"initialize", std::string(400, 'x')}}); // longer than any path can be
    EXPECT_EQ(lw_smoothing_angle, 30.0f);
}

TEST(Options, WordsOfAConversionAreKept)
{
    const TemporaryDirectory directory;
    directory.write("o.lwo", good_object());
    const PluginRun run = convert("o.lwo", {{"compute_normals", 0x10002},
                                            {"make_surface_names_unique", 0},
                                            {"import_keyframe0_only", 1},
                                            {"print_warnings", 1},
                                            {"print_statistics", 0},
                                            {"smoothing_angle", "none"},
                                            {"newtek_root_directory", "  D:/LW  "},
                                            {"explode_obj_by_surf_names", 0},
                                            {"", 0},
                                            {"validate_header", "o.lwo"}});
    EXPECT_EQ(run.result, 0);
    EXPECT_EQ(lw_compute_normals, 2);
    EXPECT_EQ(lw_make_surfnames_unique, 0);
    EXPECT_EQ(lw_import_keyframe0_only, 1);
    EXPECT_EQ(lw_print_warnings, 1);
    EXPECT_EQ(lw_print_statistics_var, 0);
    EXPECT_EQ(lw_smoothing_angle, 0.0f);
    EXPECT_EQ(lw_explode_obj_by_surf_name, 0);
    EXPECT_STREQ(lw_newtek_root_directory, "D:/LW");
    EXPECT_THAT(
        calls_of(run, {"Tv_Report_Error"}),
        ElementsAre(
            R"(["Tv_Report_Error",4,"'ERR_GEOM_IMPORT_BAD_TOKEN'","'ImportConverter_Lightwave()'","''",null])",
            R"(["Tv_Report_Error",4,"'ERR_GEOM_IMPORT_BAD_TOKEN'","'ImportConverter_Lightwave()'","'validate_header'",null])"));
    EXPECT_EQ(run.printed, ""); // no statistics

    call({{"execute_geometry_converter", 0}, {"newtek_root_directory", " \t "}, {"filename", "o.lwo"}});
    call({{"execute_geometry_converter", 0}, {"newtek_root_directory", 0}, {"filename", "o.lwo"}});
    EXPECT_STREQ(lw_newtek_root_directory, "D:/LW");
    EXPECT_EQ(lw_explode_obj_by_surf_name, 0);
}

TEST(ConversionRun, FilesThatArentThereOrArentOurs)
{
    const TemporaryDirectory directory;
    directory.write("Note.TXT", "LW");
    PluginRun run = convert("Gone.lwo");
    EXPECT_EQ(run.result, 1);
    EXPECT_THAT(
        run.trace,
        ElementsAre(
            R"(["Tv_Report_Error",4,"'ERR_FILE_OPEN_READ'","'ImportConverter_Lightwave()'","'Lightwave'","'Gone.lwo'",null])"));
    run = convert("Note.TXT");
    EXPECT_EQ(run.result, 1);
    EXPECT_THAT(run.trace,
                ElementsAre(R"(["Tv_RegisterClassStorage",-894173272,0,0])", R"(["Import_IO_Initialize","'note.txt'"])",
                            R"(["Import_IO_Display_Info_Text","'Reading Lightwave Geometry Data'"])",
                            R"(["Import_IO_Report_Error",4,"'File 'note.txt' is not in the IFF format.'"])",
                            R"(["Import_IO_printf","'File 'note.txt' is not in the IFF format.'"])",
                            R"(["Import_IO_Cleanup"])"));
    EXPECT_EQ(call({{"execute_geometry_converter", 0}}).result, 1);
}

TEST(ConversionRun, SceneGoesToTheSceneReader)
{
    const TemporaryDirectory directory;
    directory.write("S.lws", "LWSC\n1\n\nAddNullObject Here\n");
    const PluginRun run = convert("S.lws");
    EXPECT_EQ(run.result, 0);
    EXPECT_THAT(run.trace, Contains(HasSubstr("'Here'")));
    EXPECT_FALSE(run.run_left_open);
}

TEST(ConversionRun, UserStopsAtAnyPoll)
{
    const TemporaryDirectory directory;
    directory.write("o.lwo", good_object());
    const int polls = convert("o.lwo").polls;
    EXPECT_EQ(polls, 4); // one a chunk
    for (int i = 1; i <= polls; ++i) {
        const PluginRun run = convert("o.lwo", {}, i);
        EXPECT_EQ(run.result, 1);
        EXPECT_EQ(run.polls, i);
        EXPECT_THAT(run.reports, IsEmpty());
        EXPECT_EQ(run.trace.back(), R"(["Import_IO_Cleanup"])");
        EXPECT_EQ(run.printed, "");
    }
}

TEST(ConversionRun, TwoRunsAreEqualAndLeaveNothing)
{
    const TemporaryDirectory directory;
    ObjectWriter object = two_triangles();
    object.surfaces = {mapped("Hull", "Cubic Image Map", 1), SurfaceWriter("Glas").text("RIMG", "sky").u16("REFL", 9)};
    directory.write("o.lwo", object.to_bytes());
    const PluginRun first = convert("o.lwo");
    const uint64_t held = tv::allocations_held();
    const PluginRun second = convert("o.lwo");
    EXPECT_EQ(first.trace, second.trace);
    EXPECT_EQ(tv::allocations_held(), held);
    // Without a fresh start the names go on and the counters don't.
    const PluginRun third = call({{"execute_geometry_converter", 0}, {"filename", "o.lwo"}});
    EXPECT_THAT(third.printed, HasSubstr("Polygons            = 2\n"));
    EXPECT_THAT(third.trace, Contains(HasSubstr("'Hull #2'")));
    EXPECT_EQ(tv::allocations_held(), held);
}

TEST(ConversionRun, DebugFileInTheWorkingDirectory)
{
    const TemporaryDirectory directory;
    directory.write("o.lwo", good_object());
    directory.write("work/x", "");
    tv::set_environment("TV_WORKING_DIR", "work");
    EXPECT_EQ(convert("o.lwo", {{"output_debug_info", 1}}).result, 0);
    EXPECT_THAT(directory.read("work/debuglw.txt"), HasSubstr("Outputting mesh for object: 'o'.\n"));
    tv::set_environment("TV_WORKING_DIR", "nowhere");
    const PluginRun run = convert("o.lwo", {{"output_debug_info", 1}});
    EXPECT_EQ(run.result, 0);
    EXPECT_THAT(run.reports, ElementsAre("3 Could not open output debug file 'nowhere\\debuglw.txt' for writing."));
    // Ahead of the run, so no handler prints it.
    EXPECT_THAT(run.trace.front(), HasSubstr("Import_IO_Report_Error"));
    EXPECT_THAT(run.trace[1], HasSubstr("Tv_RegisterClassStorage"));
    tv::set_environment("TV_WORKING_DIR", std::string(400, 'w'));
    EXPECT_EQ(convert("o.lwo", {{"output_debug_info", 1}}).result, 0);
    tv::set_environment("TV_WORKING_DIR", "");
}

} // namespace
