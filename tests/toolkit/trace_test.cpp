// What the expected traces in tests/golden don't show: odd values, handles that move, and when lines are written.
#include <limits>

#include "lib/toolkit/words/trace.h"
#include "tests/toolkit/toolkit_fixture.h"
#include "gmock/gmock.h"

using testing::ElementsAre;
using testing::HasSubstr;

namespace {

using Trace = Toolkit;

TEST_F(Trace, KeysShowTheirNumberAndTheChannelItsOwner)
{
    add_node("ship");
    add_node("group");
    void* const channel = tv::instance_channel(instance("ship"), 10);
    add_key(channel, 0, 2.5f);
    Tv_Instance("ship", w("moveallchannels"), w("instance"), "group", 0);
    add_key(channel, 160, 1);
    const std::vector<std::string> lines = trace();
    ASSERT_EQ(lines.size(), 9u);
    EXPECT_EQ(
        lines[4],
        R"(["Tv_AnimController","ctrlrid","<ship:10>","type","kftcb",1,"preextraptype","reset",1,"postextraptype","reset",1,"keyframe",1,"time",0,"add","tcb","tension",0,"tcb","cont",0,"tcb","bias",0,"tcb","easefrom",0,"tcb","easeto",0,1,0])");
    EXPECT_EQ(lines[5], R"(["Tv_AnimController","ctrlrid","<ship:10>","keyframe",1,"kfid",1,"value",2.5,1,0])");
    EXPECT_EQ(lines[6], R"(["Tv_Instance","'ship'","moveallchannels","instance","'group'",0])");
    EXPECT_EQ(lines[8], R"(["Tv_AnimController","ctrlrid","<group:10>","keyframe",2,"kfid",2,"value",1,1,0])");
}

TEST_F(Trace, StringsAndNumbersThatJsonCannotHold)
{
    Tv_Report_Error(4, "ERR_FILE_OPEN_READ", "ImportConverter_Lightwave()", "Lightwave", "gone.lwo",
                    static_cast<char*>(nullptr));
    EXPECT_EQ(report(), "4 can't open the Lightwave file 'gone.lwo' for reading (ERR_FILE_OPEN_READ, "
                        "ImportConverter_Lightwave())");
    const float odd[] = {std::numeric_limits<float>::quiet_NaN(), std::numeric_limits<float>::infinity(),
                         -std::numeric_limits<float>::infinity()};
    const float tiny = 1e-40f, large = -3.4028235e+38f;
    Tv_Light("\"Gr\xfcn\"\\\t\x01 it's", w("color"), w("rgb"), odd, w("intensity"), &tiny, w("cutoff"), &large, 0);
    Tv_RegisterClassStorage(0xCAB3FFA8, 0, 0);
    EXPECT_THAT(
        trace(),
        ElementsAre(
            R"(["Tv_Report_Error",4,"'ERR_FILE_OPEN_READ'","'ImportConverter_Lightwave()'","'Lightwave'","'gone.lwo'",null])",
            "[\"Tv_Light\",\"'\\\"Gr\xc3\xbcn\\\"\\\\\\t\\u0001 it's'\",\"color\",\"rgb\",[\"nan\",\"inf\",\"-inf\"],"
            "\"intensity\",9.9999461e-41,\"cutoff\",-3.40282347e+38,0]",
            R"(["Tv_RegisterClassStorage",-894173272,0,0])"));
}

TEST_F(Trace, UntracedCallsSuspensionAndLostLines)
{
    float v[3] = {3, 0, 0}, m[4][4];
    Tv_Vector_Normalize(v);
    Tv_Matrix_Identity(m);
    Tv_Matrix_Append_Transform(m, w("postmultiply"), w("translate"), v, 0);
    Tv_Free_Memory(Tv_Alloc_Memory(0, 0, 8));
    char base[256];
    Tv_ExtractBaseFileName("a/b.lwo", base, 0);
    EXPECT_TRUE(trace().empty());

    tv::trace_suspend();
    tv::trace_suspend();
    add_node("hidden");
    tv::trace_resume();
    EXPECT_FALSE(tv::trace_enabled());
    tv::trace_resume();
    tv::trace_begin("Import_IO_Report_Error"); // left by a non-local exit
    tv::trace_integer(5);
    Tv_Surface("seen", 0);
    EXPECT_THAT(trace(), ElementsAre(R"(["Tv_Surface","'seen'",0])"));
}

TEST_F(Trace, ChangingTheFileWritesWhatWasBuffered)
{
    Tv_Surface("first", 0);
    ASSERT_TRUE(tv::set_trace_file((directory / "other").c_str()));
    Tv_Surface("second", 0);
    EXPECT_EQ(std::filesystem::file_size(directory / "trace"), std::string("[\"Tv_Surface\",\"'first'\",0]\n").size());
    EXPECT_FALSE(tv::set_trace_file((directory / "missing" / "trace").c_str()));
    EXPECT_FALSE(tv::trace_enabled());
    std::ifstream other(directory / "other");
    std::string line;
    std::getline(other, line);
    EXPECT_THAT(line, HasSubstr("second"));
}

} // namespace
