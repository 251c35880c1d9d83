// The Options dialog and the About box, through the plug-in's entry point.
#include <filesystem>

#include <gmock/gmock.h>
#include <unistd.h>

#include "tests/dialogs/dialog_fixture.h"

using namespace plugin_test;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace fs = std::filesystem;

namespace {

TEST_F(Dialogs, OptionsShowTheValuesInForce)
{
    directory_.write(
        "plug/imp_lw.ini",
        "compute_normals = 0\nprint_warnings = 1\nsmoothing_angle = 12.25\nnewtek_root_directory = Caf\xe9\n");
    initialize();
    EXPECT_EQ(show({"press 2"})[1],
              "show OptionsDialog: 108=Caf\xe9 100=0 103=12.25 110=0 106=1 107=1 101=1 105=0 102=1");
    EXPECT_EQ(run_.result, 0);

    lw_output_debug_info = 3; // as the options file may set it
    lw_smoothing_angle = 89.5f;
    Import_IO_Copy_String(&lw_newtek_root_directory, nullptr);
    EXPECT_EQ(show({"press 2"})[1], "show OptionsDialog: 108= 100=0 103=89.5 110=0 106=1 107=1 101=1 105=1 102=1");
    // Centred first, then filled.
    ASSERT_GE(run_.trace.size(), 2u);
    EXPECT_EQ(run_.trace[0], R"(["Import_IO_Center_Window"])");
    EXPECT_EQ(run_.trace[1], R"(["Import_IO_NdFloat_To_Dialog",103,89.5])");
}

TEST_F(Dialogs, EachBoxFlipsItsOwnVariableAndNoOther)
{
    const std::pair<int, int16_t*> boxes[] = {{110, &lw_import_keyframe0_only}, {100, &lw_compute_normals},
                                              {101, &lw_print_statistics_var},  {102, &lw_print_warnings},
                                              {105, &lw_output_debug_info},     {106, &lw_explode_obj_by_surf_name},
                                              {107, &lw_make_surfnames_unique}};
    for (const auto& [id, variable] : boxes) {
        *variable = 5; // anything but 0 becomes 0
        for (const int16_t wanted : {int16_t{0}, int16_t{1}, int16_t{0}}) {
            std::vector<int16_t> before, after;
            for (const auto& box : boxes) before.push_back(box.second == variable ? wanted : *box.second);
            const std::string press = "press " + std::to_string(id);
            const std::vector<std::string> seen = show({press, "answer ok", "press 2"});
            for (const auto& box : boxes) after.push_back(*box.second);
            EXPECT_EQ(after, before) << press;
            EXPECT_THAT(seen, Contains(HasSubstr(" " + std::to_string(id) + "=" + std::to_string(wanted)))) << press;
        }
    }
}

TEST_F(Dialogs, WarnsEachTimeTheSplitIsSwitchedOff)
{
    const std::vector<std::string> seen =
        show({"press 106", "answer ok", "press 106", "press 106", "answer cancel", "press 100", "press 2"});
    EXPECT_EQ(count_of(seen, "box "), 2);
    EXPECT_THAT(seen,
                Contains("box Warning: By disabling this option you may find that the texture maps may not appear "
                         "correctly on the imported Lightwace model(s).\n\nThis problem will only occur if an object "
                         "references two or more materials, each of which uses its own texture projection method.\n\n"
                         "Re-enable this option to prevent this problem from occurring."));
    EXPECT_EQ(lw_explode_obj_by_surf_name, 0); // whatever the box is answered with
}

TEST_F(Dialogs, CancelKeepsChangesInMemoryAndOffTheFile)
{
    directory_.write("plug/imp_lw.ini", "print_warnings = 0\n");
    show({"press 102", "type 103 not a number", "press 2"});
    EXPECT_EQ(run_.result, 0);
    EXPECT_EQ(lw_print_warnings, 1);
    EXPECT_EQ(lw_smoothing_angle, 89.5f);
    EXPECT_EQ(file(), "print_warnings = 0\n");
}

TEST_F(Dialogs, OkRefusesAnAngleThatIsNone)
{
    for (const char* const angle :
         {"", "  ", "x", "1x", "-1", "180.5", "nan", "inf", "1e99", "12 13", "0x10", "12,5"}) {
        const std::vector<std::string> seen =
            show({std::string("type 103 ") + angle, "press 1", "answer ok", "press 100", "press 2"});
        EXPECT_EQ(line_of(seen, "box "),
                  "box Smoothing Angle: The smoothing angle must be a number from 0 to 180 degrees.")
            << angle;
        EXPECT_EQ(seen.back(), "close OptionsDialog 0") << angle; // it was still open
        EXPECT_EQ(lw_smoothing_angle, 89.5f) << angle;
        EXPECT_FALSE(fs::exists(place_ + "imp_lw.ini")) << angle;
    }
    const std::pair<const char*, float> good[] = {{"0", 0}, {" 45.5 ", 45.5f}, {"180", 180}, {"1e1", 10}};
    for (const auto& [angle, value] : good) {
        EXPECT_EQ(show({std::string("type 103 ") + angle, "press 1"}).back(), "close OptionsDialog 1") << angle;
        EXPECT_EQ(run_.result, 1);
        EXPECT_EQ(lw_smoothing_angle, value) << angle;
    }
}

TEST_F(Dialogs, OkWritesTwelveLinesThatReadBack)
{
    show({"press 100", "press 110", "press 106", "answer ok", "press 102", "type 103 30", "press 1"});
    EXPECT_EQ(run_.result, 1);
    const std::string text = file();
    EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 12);
    EXPECT_THAT(text, HasSubstr("\nsmoothing_angle = 30\n"));
    start_fresh();
    initialize();
    EXPECT_EQ(show({"press 2"})[1], "show OptionsDialog: 108=c:\\ 100=0 103=30 110=1 106=0 107=1 101=1 105=0 102=1");
}

TEST_F(Dialogs, ContentDirectoriesOfAnyLength)
{
    const std::string key = "newtek_root_directory = \"";
    for (const std::string& root : {std::string("D:\\\"my\" = \xe9t\xe9  stuff"), std::string(299, 'a'),
                                    std::string(300, 'b'), std::string(5000, 'c')}) {
        set_root(root.c_str());
        EXPECT_THAT(show({"press 1"})[1], HasSubstr(" 108=" + root + " "));
        EXPECT_THAT(file(), HasSubstr("\n" + key + root + "\"\n"));
        start_fresh();
        initialize();
        // The reader takes 127 characters a line; what stands before the path is whole.
        EXPECT_EQ(std::string(lw_newtek_root_directory), root.substr(0, 127 - key.size()));
        EXPECT_EQ(lw_explode_obj_by_surf_name, 1);
    }
}

TEST_F(Dialogs, AFileThatCantBeWrittenIsToldAndTheDialogCloses)
{
    const std::string told = "Lightwave .INI";
    fs::create_directory(place_ + "imp_lw.ini"); // a directory of the file's name
    EXPECT_EQ(show({"press 1"}).back(), "close OptionsDialog 1");
    EXPECT_THAT(run_.toolkit, ElementsAre(HasSubstr(told)));

    place_ = directory_.path() + "/gone/"; // no such directory
    initialize();
    show({"press 1"});
    EXPECT_EQ(run_.result, 1);
    EXPECT_THAT(run_.toolkit, ElementsAre(HasSubstr(told)));

    // Longer than the path's buffer: nothing is written under a cut name.
    const fs::path deep = directory_.path() + "/" + std::string(150, 'd') + "/" + std::string(290, 'e').substr(0, 145);
    fs::create_directories(deep);
    place_ = deep.string() + "/";
    ASSERT_GT(place_.size() + 10, 300u);
    initialize();
    show({"press 1"});
    EXPECT_EQ(run_.result, 1);
    EXPECT_THAT(run_.toolkit, ElementsAre(HasSubstr(told)));
    EXPECT_TRUE(fs::is_empty(deep));
}

TEST_F(Dialogs, HelpAndAbout)
{
    const std::vector<std::string> seen =
        show({"press 200", "answer ok", "press 201", "press 200", "press 1", "press 2"});
    const std::vector<std::string> opened_and_closed = [&] {
        std::vector<std::string> lines;
        for (const std::string& line : seen) {
            if (line.rfind("show", 0) != 0) lines.push_back(line.substr(0, line.find(':')));
        }
        return lines;
    }();
    EXPECT_THAT(opened_and_closed, ElementsAre("open OptionsDialog", "box Help", "open AboutBox", "box Help",
                                               "close AboutBox 1", "close OptionsDialog 0"));
    const std::string topic = R"(["Import_IO_DisplayHelpTopic","')" + place_ + R"('","'imp_lw.hlp'","'main'"])";
    EXPECT_THAT(calls_of(run_, {"Import_IO_DisplayHelpTopic"}), ElementsAre(topic, topic));

    EXPECT_THAT(show({"press 1"}, "show_about_dialog"),
                ElementsAre("open AboutBox", "show AboutBox:", "close AboutBox 1"));
    EXPECT_EQ(run_.result, 0); // whatever the box is closed with
}

TEST_F(Dialogs, WithoutAnythingToShowThemIn)
{
    platform::set_dialog_face(nullptr);
    testing::internal::CaptureStderr();
    // Standard input of a test is no terminal, or its output isn't.
    if (isatty(0) && isatty(1)) GTEST_SKIP() << "run from a terminal";
    EXPECT_EQ(call({{"show_options_dialog", 0}, {"show_about_dialog", 0}}).result, 0);
    const std::string said = testing::internal::GetCapturedStderr();
    EXPECT_EQ(said, "No dialog: dialogs need a terminal, and there is none; nothing was changed.\n"
                    "No dialog: dialogs need a terminal, and there is none; nothing was changed.\n");
    EXPECT_FALSE(fs::exists(place_ + "imp_lw.ini"));
}

} // namespace
