// imp_lw.ini, both ways.
#include <string>

#include <gtest/gtest.h>

#include "lib/import/lw/base/option_variables.h"
#include "lib/import/lw/lw2tv/options_file.h"
#include "lib/services/import_io.h"
#include "tests/support/run_plugin.h"

using namespace plugin_test;

namespace {

class OptionsFile : public testing::Test {
protected:
    OptionsFile()
    {
        start_fresh();
        lw_init_import_variables();
    }

    int16_t restore(std::string_view text)
    {
        directory_.write("imp_lw.ini", text);
        char path[] = "imp_lw.ini";
        return RestoreImportConvertOptions_Lightwave(path);
    }

    std::string save()
    {
        char path[] = "imp_lw.ini";
        EXPECT_EQ(SaveImportConvertOptions_Lightwave(path), 0);
        return directory_.read("imp_lw.ini");
    }

    const TemporaryDirectory directory_;
};

TEST_F(OptionsFile, TheTwelveLines)
{
    EXPECT_EQ(save(), "# Default options for the Lightwave geometry import converter.\n"
                      "# !! Do not modify this file. It is written by the converter.\n"
                      "[Preferences]\n"
                      "compute_normals = 1\n"
                      "make_surface_names_unique = 1\n"
                      "import_keyframe0_only = 0\n"
                      "print_statistics = 1\n"
                      "print_warnings = 0\n"
                      "smoothing_angle = 89.5\n"
                      "output_debug_info = 0\n"
                      "explode_obj_by_surf_names = 1\n"
                      "newtek_root_directory = \"c:\\\"\n");
}

TEST_F(OptionsFile, WhatIsWrittenReadsBackTheSame)
{
    lw_compute_normals = 0;
    lw_make_surfnames_unique = -7;
    lw_import_keyframe0_only = 1;
    lw_print_statistics_var = 0;
    lw_print_warnings = 2;
    lw_smoothing_angle = 12.25f;
    lw_output_debug_info = 3;
    lw_explode_obj_by_surf_name = 0;
    Import_IO_Copy_String(&lw_newtek_root_directory, "D:\\my = stuff\\");
    const std::string text = save();
    start_fresh();
    lw_init_import_variables();
    EXPECT_EQ(restore(text), 0);
    EXPECT_EQ(lw_compute_normals, 0);
    EXPECT_EQ(lw_make_surfnames_unique, -7);
    EXPECT_EQ(lw_import_keyframe0_only, 1);
    EXPECT_EQ(lw_print_statistics_var, 0);
    EXPECT_EQ(lw_print_warnings, 2);
    EXPECT_EQ(lw_smoothing_angle, 12.25f);
    EXPECT_EQ(lw_output_debug_info, 3);
    EXPECT_EQ(lw_explode_obj_by_surf_name, 0);
    EXPECT_STREQ(lw_newtek_root_directory, "D:\\my = stuff\\");
}

TEST_F(OptionsFile, BlanksSectionsAndUnknownKeys)
{
    restore("  compute_normals=0  \r\n\n[Other]\n# print_warnings = 1\nx\nCompute_Normals = 1\nfuture = 5\n"
            "smoothing_angle   =   1e1\nprint_statistics = yes\n\tprint_warnings = 65537");
    EXPECT_EQ(lw_compute_normals, 0);
    EXPECT_EQ(lw_smoothing_angle, 10.0f);
    EXPECT_EQ(lw_print_statistics_var, 0); // no number
    EXPECT_EQ(lw_print_warnings, 1);       // the low 16 bits
}

TEST_F(OptionsFile, AKeyWithoutValueHidesTheRest)
{
    for (const char* const line : {"smoothing_angle\n", "smoothing_angle =\n", "smoothing_angle =  \n", "==\n"}) {
        EXPECT_EQ(restore(std::string("print_warnings = 1\n") + line + "compute_normals = 0\n"), 0);
        EXPECT_EQ(lw_print_warnings, 1) << line;
        EXPECT_EQ(lw_compute_normals, 1) << line;
        EXPECT_EQ(lw_smoothing_angle, 89.5f) << line;
    }
}

TEST_F(OptionsFile, RootDirectoryWithAndWithoutQuotes)
{
    const std::pair<const char*, const char*> cases[] = {
        {"\"D:\\LW\\\"", "D:\\LW\\"},
        {"D:/LW", "D:/LW"},
        {"\"D:/LW", "D:/LW"},
        {"D:/LW\"", "D:/LW"},
        {"\"\"", nullptr},
        {"back", "back"},
        {"\"", nullptr},
    };
    for (const auto& [value, stored] : cases) {
        restore(std::string("newtek_root_directory = ") + value + "\n");
        EXPECT_STREQ(lw_newtek_root_directory, stored) << value;
    }
    EXPECT_NE(save().find("newtek_root_directory = \"\"\n"), std::string::npos);
}

TEST_F(OptionsFile, MissingAndUnwritableFiles)
{
    char missing[] = "nowhere.ini", unwritable[] = "nowhere/imp_lw.ini";
    EXPECT_EQ(RestoreImportConvertOptions_Lightwave(missing), 1);
    EXPECT_EQ(SaveImportConvertOptions_Lightwave(unwritable), 1);
    EXPECT_EQ(lw_smoothing_angle, 89.5f);
}

// A line comes in pieces of 127 characters: the second piece is a line of its own.
TEST_F(OptionsFile, LongLines)
{
    const std::string head = "newtek_root_directory = ";
    restore(head + std::string(127 - head.size(), 'd') + "print_warnings = 1\n");
    EXPECT_EQ(std::string(lw_newtek_root_directory), std::string(127 - head.size(), 'd'));
    EXPECT_EQ(lw_print_warnings, 1);
}

} // namespace
