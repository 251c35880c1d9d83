// Stored paths and what becomes of them.
#include <gtest/gtest.h>

#include "lib/import/lw/base/path_mapping.h"
#include "lib/services/import_io.h"
#include "lib/toolkit/vc4_tv.h"

namespace {

struct PathCase {
    const char* stored;
    int16_t depth, is_image;
    const char* mapped;
    int16_t separators;
};

class PathMapping : public testing::TestWithParam<PathCase> {};

TEST_P(PathMapping, Maps)
{
    const PathCase& c = GetParam();
    char* name = nullptr;
    Import_IO_Copy_String(&name, c.stored);
    EXPECT_EQ(convert_lw_filename(&name, c.depth, c.is_image), c.separators) << c.stored;
    EXPECT_STREQ(name, c.mapped) << c.stored;
    Tv_Free_Memory(name);
}

INSTANTIATE_TEST_SUITE_P(
    All, PathMapping,
    testing::Values(PathCase{"", 0, 1, "", 0},                                 //
                    PathCase{"Wood.LBM", 0, 1, "wood.iff", 0},                 //
                    PathCase{"C:\\Pics\\Wood.tga", 0, 1, "wood.tga", 1},       // behind ":" isn't counted
                    PathCase{"C:\\Pics\\Wood.tga", 1, 1, "pics\\wood.tga", 1}, //
                    PathCase{"C:\\Pics\\Wood.tga", 9, 1, "pics\\wood.tga", 1}, // the depth is the count's at most
                    PathCase{"Toys:Plane.lwo", 0, 0, "plane.lwo", 0},          // ":" cuts, and isn't counted
                    PathCase{"Toys:Objects/Plane.lwo", 0, 0, "plane.lwo", 1},  //
                    PathCase{"Toys:Objects/Plane.lwo", 1, 0, "objects/plane.lwo", 1},
                    PathCase{"/Plane.lwo", 0, 0, "plane.lwo", 0}, // a leading one isn't counted
                    PathCase{"Objects\\Space/Plane", 2, 0, "objects\\space/plane", 2},
                    PathCase{"Objects\\Space/Plane", 1, 0, "space/plane", 2}, //
                    PathCase{"Objects/", 0, 0, "", 1},                        //
                    PathCase{"//", 0, 0, "", 1},                              //
                    PathCase{".MAP", 0, 0, ".iff", 0},                        //
                    PathCase{"map", 0, 1, "map", 0},                          //
                    PathCase{"A.LWO", 0, 0, "a.lwo", 0},                      //
                    PathCase{"A.LWO", 0, 1, "a.iff", 0},                      //
                    PathCase{"a.col", 0, 0, "a.iff", 0},                      //
                    PathCase{"a.brs", 0, 0, "a.iff", 0},                      //
                    PathCase{"a.ham", 0, 0, "a.iff", 0},                      //
                    PathCase{"a.iff", 0, 0, "a.iff", 0},                      //
                    PathCase{"a.jpeg", 0, 1, "a.jpeg", 0},                    //
                    PathCase{"(none)", 0, 1, "(none)", 0}));

TEST(PathMappingNull, IsLeftAlone)
{
    char* name = nullptr;
    EXPECT_EQ(convert_lw_filename(&name, 0, 1), 0);
    EXPECT_EQ(name, nullptr);
}

} // namespace
