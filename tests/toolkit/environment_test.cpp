// What calls learn from the host and the disk, and memory.
#include <cstdlib>
#include <cstring>

#include "lib/platform/latin1.h"
#include "lib/toolkit/calls/environment.h"
#include "lib/toolkit/memory.h"
#include "tests/toolkit/toolkit_fixture.h"
#include "gmock/gmock.h"

namespace {

class Environment : public Toolkit {
protected:
    void TearDown() override
    {
        tv::set_search_path({});
        tv::set_environment("TV_SEARCHPATH_TEST", "");
        unsetenv("TV_SEARCHPATH_TEST");
        Toolkit::TearDown();
    }
    void make_file(const std::string& name)
    {
        std::filesystem::create_directories((directory / name).parent_path());
        std::ofstream(directory / name) << name;
    }
    std::string place(const char* name) { return (directory / name).string(); }
    // Where a search ends, below the test's directory; empty when nothing was found.
    std::string find(const char* name)
    {
        char found[300] = "untouched";
        void* const file = Tv_Search_And_Open_File(name, "r", 0, "TV_SEARCHPATH_TEST", found);
        if (!file) {
            EXPECT_STREQ(found, "");
            return "";
        }
        Tv_Fclose_File(file);
        std::FILE* const again = std::fopen(found, "rb");
        EXPECT_NE(again, nullptr) << found;
        if (again) std::fclose(again);
        return std::string(found).substr(directory.string().size() + 1);
    }
};

TEST_F(Environment, WordsComeFromTheHostThenFromTheProcess)
{
    const char* value = "?";
    Tv_Inquire_Environment("TV_SEARCHPATH_TEST", &value);
    EXPECT_EQ(value, nullptr);
    setenv("TV_SEARCHPATH_TEST", "gr\xc3\xbcn", 1);
    Tv_Inquire_Environment("TV_SEARCHPATH_TEST", &value);
    EXPECT_STREQ(value, "gr\xfcn");
    tv::set_environment("TV_SEARCHPATH_TEST", "host");
    Tv_Inquire_Environment("TV_SEARCHPATH_TEST", &value);
    EXPECT_STREQ(value, "host");
    tv::set_environment("TV_SEARCHPATH_TEST", "");
    Tv_Inquire_Environment("TV_SEARCHPATH_TEST", &value);
    EXPECT_STREQ(value, "gr\xfcn");
}

TEST_F(Environment, SearchTriesEachSpellingInADirectoryBeforeTheNext)
{
    make_file("first/ship.lw");
    make_file("first/gate.lwo");
    make_file("second/ship");
    make_file("second/plain");
    make_file("second/Ring.LWO");
    make_file("third/deep.lwo");
    std::filesystem::create_directories(directory / "first/plain.lwo");
    tv::set_search_path({place("missing"), place("first"), place("second")}, {".lwo", ".lw", ".lwob"});
    EXPECT_EQ(find("ship"), "first/ship.lw");
    EXPECT_EQ(find("gate"), "first/gate.lwo");
    EXPECT_EQ(find("plain.lwo"), "second/plain"); // a directory of the name is none
    EXPECT_EQ(find("deep.lwo"), "");
    EXPECT_EQ(find("gate.lwo.bak"), "");
    EXPECT_EQ(find("ring"), "second/Ring.LWO"); // as the disk spells it
    tv::set_environment("TV_SEARCHPATH_TEST", place("missing") + ":" + place("third"));
    EXPECT_EQ(find("deep.lwo"), "third/deep.lwo");
    tv::set_environment("TV_SEARCHPATH_TEST", "C:\\none;" + place("third"));
    EXPECT_EQ(find("deep"), "third/deep.lwo");
    EXPECT_EQ(find(std::string(400, 'x').c_str()), ""); // fits no path
    EXPECT_EQ(find(""), "");
}

TEST_F(Environment, PathsAsText)
{
    char base[256];
    const auto base_of = [&](const char* path) {
        Tv_ExtractBaseFileName(path, base, 0);
        return std::string(base);
    };
    EXPECT_EQ(base_of("Toys:Objects/Plane.lwo"), "Plane.lwo");
    EXPECT_EQ(base_of("C:\\NEWTEK\\X.LWO"), "X.LWO");
    EXPECT_EQ(base_of("DH1:x"), "x");
    EXPECT_EQ(base_of("plain"), "plain");
    EXPECT_EQ(base_of("dir/"), "");
    EXPECT_EQ(base_of(std::string(400, 'x').c_str()), std::string(255, 'x'));
    const std::pair<const char*, int32_t> types[] = {{"a.iff", 1}, {"A.IFF", 1},   {"b.tga", 2},  {"x.y.JPeG", 3},
                                                     {"c.png", 4}, {"d.bmp", 5},   {"e.gif", 6},  {"f.tiff", 7},
                                                     {"g.pcx", 8}, {"h.rgb", 9},   {"i.PCT", 10}, {"iff", 0},
                                                     {"a.", 0},    {"a.iff/b", 0}, {".iff", 0},   {"a.jpegs", 0}};
    for (const auto& [name, expected] : types) {
        int32_t type = -1;
        EXPECT_EQ(Tv_Determine_Image_File_Type(name, &type), expected) << name;
        EXPECT_EQ(type, expected);
    }
    char path[] = "C:\\dir\\imp_lw.ini";
    Tv_Convert_Pathname(path);
    EXPECT_STREQ(path, "/dir/imp_lw.ini");
    int32_t exists = -1;
    Tv_File_Exists(place("").c_str(), &exists);
    EXPECT_EQ(exists, 1);
    Tv_File_Exists(place("nothing").c_str(), &exists);
    EXPECT_EQ(exists, 0);
}

TEST_F(Environment, MemoryIsCountedClearedAndFailsOnDemand)
{
    const uint64_t held = tv::allocations_held();
    auto* block = static_cast<unsigned char*>(Tv_Alloc_Memory(0, 1, 100));
    ASSERT_NE(block, nullptr);
    EXPECT_EQ(std::count(block, block + 100, 0), 100);
    block[99] = 7;
    tv::fail_allocation(2);
    void* const other = Tv_Alloc_Memory(0, 0, 0);
    EXPECT_NE(other, nullptr);
    EXPECT_EQ(Tv_Realloc_Memory(0, block, 200), nullptr);
    EXPECT_EQ(block[99], 7);                                               // untouched
    block = static_cast<unsigned char*>(Tv_Realloc_Memory(0, block, 200)); // once only
    ASSERT_NE(block, nullptr);
    EXPECT_EQ(block[99], 7);
    EXPECT_EQ(Tv_Alloc_Memory(0, 0, SIZE_MAX), nullptr);
    EXPECT_EQ(tv::allocations_held(), held + 2);
    Tv_Free_Memory(block);
    Tv_Free_Memory(other);
    Tv_Free_Memory(nullptr);
    EXPECT_EQ(tv::allocations_held(), held);
}

TEST(Latin1, ThereAndBack)
{
    std::string all;
    for (int c = 1; c < 256; ++c) all += static_cast<char>(c);
    EXPECT_EQ(platform::utf8_to_latin1(platform::latin1_to_utf8(all)), all);
    EXPECT_EQ(platform::latin1_to_utf8("\xfc"), "\xc3\xbc");
    for (const char* const kept : {"\xe2\x82\xac", "\xfc", "a\xc3", "\xc3(", "\xc4\x80"})
        EXPECT_EQ(platform::utf8_to_latin1(kept), kept); // beyond Latin-1, or no UTF-8
}

} // namespace
