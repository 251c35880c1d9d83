#include <gtest/gtest.h>

#include "lib/services/host.h"
#include "lib/toolkit/scene/scene.h"
#include "lib/toolkit/vc4_tv.h"

namespace {

class UniqueNames : public testing::Test {
protected:
    void SetUp() override
    {
        tv::clear_scene();
        services::clear();
    }

    static int32_t token(const char* kind) { return Tv_Inquire_Token(kind); }

    static std::string unique(const char* kind, const std::string& name)
    {
        char out[256];
        Import_IO_MakeNameUnique(token(kind), name.c_str(), out);
        return out;
    }

    static std::string unique_and_saved(const char* kind, const std::string& name)
    {
        char out[256];
        Import_IO_MakeAndSaveUniqueName(token(kind), name.c_str(), out);
        return out;
    }

    static void make_instance(const std::string& name) { Tv_Add_Empty_Node(token("instance"), name.c_str(), 0); }
    static void remove_instance(const std::string& name) { Tv_Remove(token("instance"), name.c_str(), 0); }
};

TEST_F(UniqueNames, AreTheNameItselfOrTheSmallestNumberFromTwo)
{
    EXPECT_EQ(unique("instance", "ship"), "ship");
    EXPECT_EQ(unique("instance", "ship"), "ship"); // asking doesn't use a name
    make_instance("ship");
    EXPECT_EQ(unique("instance", "ship"), "ship #2");
    EXPECT_EQ(unique("object", "ship"), "ship"); // each kind has its own names
    make_instance("ship #3");
    make_instance("ship #2");
    EXPECT_EQ(unique("instance", "ship"), "ship #4");
    EXPECT_EQ(unique("instance", "ship #2"), "ship #2 #2");
    EXPECT_EQ(unique("instance", "Ship"), "Ship");
    EXPECT_EQ(unique("instance", "world"), "world #2");
    EXPECT_EQ(unique("light", "defaultambient"), "defaultambient #2");
}

TEST_F(UniqueNames, NotedNamesCountAsUsedUntilTheSceneIsCleared)
{
    EXPECT_EQ(unique_and_saved("surface", "hull"), "hull");
    EXPECT_EQ(unique_and_saved("surface", "hull"), "hull #2");
    Import_IO_SaveHandleName(token("surface"), "hull #3");
    EXPECT_EQ(unique_and_saved("surface", "hull"), "hull #4");
    tv::clear_scene();
    services::clear();
    EXPECT_EQ(unique_and_saved("surface", "hull"), "hull");
}

TEST_F(UniqueNames, MayBeWrittenOverTheName)
{
    make_instance("node");
    char name[256] = "node";
    Import_IO_MakeNameUnique(token("instance"), name, name);
    EXPECT_STREQ(name, "node #2");
}

TEST_F(UniqueNames, ARemovedThingGivesItsNumberBack)
{
    for (const char* const name : {"n", "n #2", "n #3", "n #4", "n #5"}) make_instance(name);
    EXPECT_EQ(unique("instance", "n"), "n #6");
    remove_instance("n #4");
    remove_instance("n #2");
    EXPECT_EQ(unique("instance", "n"), "n #2");
    make_instance("n #2");
    EXPECT_EQ(unique("instance", "n"), "n #4");
    remove_instance("n");
    EXPECT_EQ(unique("instance", "n"), "n");
    make_instance("n");
    make_instance("n #4");
    EXPECT_EQ(unique("instance", "n"), "n #6");
    Import_IO_SaveHandleName(token("instance"), "n #3");
    remove_instance("n #3"); // noted: still used
    EXPECT_EQ(unique("instance", "n"), "n #6");
}

TEST_F(UniqueNames, HoldAtMost255Bytes)
{
    const std::string long_name(300, 'x');
    EXPECT_EQ(unique_and_saved("surface", long_name), std::string(255, 'x'));
    EXPECT_EQ(unique_and_saved("surface", long_name), std::string(252, 'x') + " #2");
    EXPECT_EQ(unique_and_saved("surface", std::string(254, 'x')), std::string(254, 'x'));
    EXPECT_EQ(unique_and_saved("surface", std::string(254, 'x')), std::string(252, 'x') + " #3"); // #2 is the other's
    for (int i = 4; i < 10; ++i) unique_and_saved("surface", long_name);
    EXPECT_EQ(unique_and_saved("surface", long_name), std::string(251, 'x') + " #10");
    EXPECT_EQ(unique("surface", std::string(254, 'x') + "y"), std::string(254, 'x') + "y");
}

TEST_F(UniqueNames, CutNamesOfRemovedThingsAreFreeAgain)
{
    const std::string base(255, 'b');
    make_instance(base);
    for (int i = 2; i < 12; ++i) make_instance(unique("instance", base));
    EXPECT_EQ(unique("instance", base), std::string(251, 'b') + " #12");
    remove_instance(std::string(251, 'b') + " #10");
    EXPECT_EQ(unique("instance", base), std::string(251, 'b') + " #10");
}

// Each call looks at a few names, however many things bear the name: without that, this would run into its time limit.
TEST_F(UniqueNames, AHundredThousandOfOneName)
{
    for (int i = 1; i <= 100'000; ++i) {
        const std::string name = unique_and_saved("surface", "same");
        ASSERT_EQ(name, i == 1 ? "same" : "same #" + std::to_string(i));
    }
    make_instance("gone");
    std::string last;
    for (int i = 2; i <= 50'000; ++i) { // removals in between don't make it start over
        const std::string name = unique("instance", "gone");
        make_instance(name);
        if (i % 2) remove_instance(last);
        last = name;
    }
}

TEST_F(UniqueNames, TranslationsComeFromTheHostsTable)
{
    EXPECT_EQ(Import_IO_TranslateName(token("surface"), "hull"), nullptr);
    services::set_translation(token("surface"), "hull", "Rumpf");
    EXPECT_STREQ(Import_IO_TranslateName(token("surface"), "hull"), "Rumpf");
    EXPECT_EQ(Import_IO_TranslateName(token("object"), "hull"), nullptr);
    services::set_translation(token("surface"), "hull", "");
    EXPECT_EQ(Import_IO_TranslateName(token("surface"), "hull"), nullptr);
}

} // namespace
