// What the services' calls leave out of the trace, and the channel tables.
#include <fstream>
#include <gtest/gtest.h>
#include <unistd.h>

#include "lib/services/host.h"
#include "lib/toolkit/scene/scene.h"
#include "lib/toolkit/vc4_tv.h"
#include "lib/toolkit/words/trace.h"

namespace {

class Trace : public testing::Test {
protected:
    void SetUp() override
    {
        tv::clear_scene();
        services::clear();
        path_ = testing::TempDir() + "services_trace_" + std::to_string(getpid());
        ASSERT_TRUE(tv::set_trace_file(path_.c_str()));
    }

    void TearDown() override
    {
        tv::set_trace_file(nullptr);
        unlink(path_.c_str());
    }

    std::vector<std::string> lines()
    {
        tv::trace_flush();
        std::ifstream file(path_);
        std::vector<std::string> out;
        for (std::string line; std::getline(file, line);) out.push_back(line);
        return out;
    }

    const int32_t instance = Tv_Inquire_Token("instance");

private:
    std::string path_;
};

using Lines = std::vector<std::string>;

TEST_F(Trace, WhatAttachingDoesInsideIsNotShown)
{
    Tv_Object_Define("ship", 0);
    Tv_Object_End(0);
    const std::size_t before = lines().size();
    char out[256];
    Import_IO_Attach_Object_To_World("ship", "ship", out, instance, "world");
    Import_IO_Attach_Object_To_World("ship", "ship", out, instance, "ship");
    Lines added = lines();
    added.erase(added.begin(), added.begin() + static_cast<std::ptrdiff_t>(before));
    EXPECT_EQ(added, (Lines{
                         R"(["Import_IO_Attach_Object_To_World","'ship'","'ship'","'ship'","instance","'world'"])",
                         R"(["Import_IO_Attach_Object_To_World","'ship'","'ship'","'ship #2'","instance","'ship'"])",
                     }));
    const tv::Id second = tv::scene().find(tv::Kind::instance, "ship #2");
    ASSERT_NE(second, tv::no_id);
    EXPECT_EQ(tv::scene().instances[second].parent, tv::scene().find(tv::Kind::instance, "ship"));
    EXPECT_EQ(tv::scene().instances[second].object, tv::scene().find(tv::Kind::object, "ship"));
}

TEST_F(Trace, ChannelTablesHoldTheChannelsAndTheRotationGuards)
{
    Tv_Add_Empty_Node(instance, "node", 0);
    Tv_Camera("lightwave", 0);
    const std::size_t before = lines().size();
    void* table[20];
    std::fill_n(table, 20, &table);
    EXPECT_EQ(Import_IO_Get_DefaultAnimationChannelPtrs("node", table), 1);
    for (std::size_t slot = 0; slot < 20; ++slot) {
        EXPECT_EQ(table[slot] != nullptr, (slot >= 6 && slot <= 8) || (slot >= 10 && slot <= 18)) << slot;
    }
    Import_IO_OptimizeTransformationChannels("node");
    std::fill_n(table, 20, &table);
    EXPECT_EQ(Import_IO_Get_DefaultAnimationChannelPtrs("gone", table), 0);
    for (std::size_t slot = 0; slot < 20; ++slot) EXPECT_EQ(table[slot], nullptr) << slot;

    std::fill_n(table, 20, &table);
    EXPECT_EQ(Import_IO_Get_DefaultCameraAnimationChannelPtrs("lightwave", table), 1);
    for (std::size_t slot = 0; slot < 16; ++slot) EXPECT_EQ(table[slot] != nullptr, slot >= 8 && slot <= 14) << slot;
    EXPECT_EQ(table[16], &table); // a camera's table ends here
    Import_IO_OptimizeCameraTransformationChannels("lightwave");
    EXPECT_EQ(Import_IO_Get_DefaultCameraAnimationChannelPtrs("gone", table), 0);

    Lines added = lines();
    added.erase(added.begin(), added.begin() + static_cast<std::ptrdiff_t>(before));
    EXPECT_EQ(added, (Lines{
                         R"(["Import_IO_Get_DefaultAnimationChannelPtrs","'node'",1])",
                         R"(["Import_IO_OptimizeTransformationChannels","'node'"])",
                         R"(["Import_IO_Get_DefaultAnimationChannelPtrs","'gone'",0])",
                         R"(["Import_IO_Get_DefaultCameraAnimationChannelPtrs","'lightwave'",1])",
                         R"(["Import_IO_OptimizeCameraTransformationChannels","'lightwave'"])",
                         R"(["Import_IO_Get_DefaultCameraAnimationChannelPtrs","'gone'",0])",
                     }));
}

} // namespace
