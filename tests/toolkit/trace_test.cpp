// The trace of each kind of call, to the letter.
#include <limits>

#include "lib/toolkit/words/trace.h"
#include "tests/toolkit/toolkit_fixture.h"
#include "gmock/gmock.h"

using testing::ElementsAre;
using testing::HasSubstr;

namespace {

using Trace = Toolkit;

TEST_F(Trace, SurfacesAndTextures)
{
    const float color[] = {1, 128 / 255.0f, 192 / 255.0f};
    Tv_Surface("hull", w("color"), w("rgb"), color, 0);
    Tv_Texture("diffuse color: a.iff (wrap)", w("image"), w("textureimage"), 1, "a.iff", 1, w("filter"), w("mipmap"), 1,
               w("wrapu"), w("enabled"), w("on"), 1, w("wrapv"), w("enabled"), w("on"), 1, 0);
    const float opacity = 0.25f, third = 1 / 3.0f;
    Tv_Surface("hull", w("texture"), "layer 1", w("modulate"), w("color"), w("enabled"), w("off"), w("multiplier"),
               w("diffuse"), color, w("multiplier"), w("bumpu"), &third, w("mix"), w("diffuse"), &opacity, 1, 0);
    int32_t type = 0;
    Tv_Determine_Image_File_Type("a.iff", &type);
    float got[3];
    Tv_Inquire_Surface("hull", w("color"), got, 0);
    EXPECT_THAT(
        trace(),
        ElementsAre(
            R"(["Tv_Surface","'hull'","color","rgb",[1,0.501960814,0.752941191],0])",
            R"(["Tv_Texture","'diffuse color: a.iff (wrap)'","image","textureimage",1,"'a.iff'",1,"filter","mipmap",1,"wrapu","enabled","on",1,"wrapv","enabled","on",1,0])",
            R"(["Tv_Surface","'hull'","texture","'layer 1'","modulate","color","enabled","off","multiplier","diffuse",[1,0.501960814,0.752941191],"multiplier","bumpu",0.333333343,"mix","diffuse",0.25,1,0])",
            R"(["Tv_Determine_Image_File_Type","'a.iff'",1])",
            R"(["Tv_Inquire_Surface","'hull'","color",[1,0.501960814,0.752941191],0])"));
    EXPECT_TRUE(reports.empty());
}

TEST_F(Trace, ObjectsAndTheTree)
{
    const int32_t polygons = 1, sizes[] = {3}, offset = 0, points = 3, corners[] = {1, 2, 3};
    const float positions[] = {0, 0, 0, 1, 0, 0, 0, 1, -2}, angle = 89.5f;
    const char* const* const none = nullptr;
    Tv_Surface("hull", 0);
    Tv_Object_Define("ship", 0);
    Tv_Primitive(w("indexedpolygons"), w("numpolygons"), &polygons, 1, w("verticesperpoly"), sizes, 1,
                 w("indiceoffset"), &offset, 1, w("clockwise"), w("enabled"), w("on"), 1, w("vertex"), &points,
                 positions, corners, 1, w("surfacelink"), none, 1, 0);
    Tv_Object_End(0);
    Tv_Manipulate_IndexedPolygons("ship", 0, w("calcnormals"), w("angle"), &angle, 0);
    Tv_Surfacelink(w("surface"), "hull", w("object"), "ship", 0);
    Tv_Add_Instance(w("instance"), "ship", w("object"), "ship", 0);
    int32_t kind = -1, number = -1;
    const char* name = "?";
    Tv_Inquire_Instance("ship", w("parent"), &kind, &name, 0);
    Tv_Attach(w("instance"), "ship", w("instance"), "world", 0);
    Tv_Inquire_Instance("ship", w("parent"), &kind, &name, 0);
    Tv_Local_Axes* axes = nullptr;
    Tv_Inquire_Instance("ship", w("localaxes"), &axes, 0);
    Tv_Inquire_Instance("ship", w("masterobject"), &name, 1, w("numchildren"), &number, 0);
    Tv_Inquire_Object("ship", w("numprimitives"), &number, 1, 0);
    float upper[3], lower[3];
    Tv_Compute_Worldspace_Extents(upper, lower, 0);
    EXPECT_THAT(
        trace(),
        ElementsAre(
            R"(["Tv_Surface","'hull'",0])", R"(["Tv_Object_Define","'ship'",0])",
            R"(["Tv_Primitive","indexedpolygons","numpolygons",1,1,"verticesperpoly",[3],1,"indiceoffset",0,1,"clockwise","enabled","on",1,"vertex",3,[0,0,0,1,0,0,0,1,-2],[1,2,3],1,"surfacelink",null,1,0])",
            R"(["Tv_Object_End",0])", R"(["Tv_Manipulate_IndexedPolygons","'ship'",0,"calcnormals","angle",89.5,0])",
            R"(["Tv_Surfacelink","surface","'hull'","object","'ship'",0])",
            R"(["Tv_Add_Instance","instance","'ship'","object","'ship'",0])",
            R"(["Tv_Inquire_Instance","'ship'","parent",0,null,0])",
            R"(["Tv_Attach","instance","'ship'","instance","'world'",0])",
            R"(["Tv_Inquire_Instance","'ship'","parent","instance","'world'",0])",
            R"(["Tv_Inquire_Instance","'ship'","localaxes",{"matrix":[1,0,0,0,0,1,0,0,0,0,1,0,0,0,0,1],"scale":1,"flag_a":0,"origin_enabled":0,"flag_c":0},0])",
            R"(["Tv_Inquire_Instance","'ship'","masterobject","'ship'",1,"numchildren",0,0])",
            R"(["Tv_Inquire_Object","'ship'","numprimitives",1,1,0])",
            R"(["Tv_Compute_Worldspace_Extents",[1,1,0],[0,0,-2],0])"));
    EXPECT_TRUE(reports.empty());
}

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

TEST_F(Trace, SettingsAndProjection)
{
    const int32_t size[] = {480, 360}, rate = 29;
    const float window[] = {3.125f, 3.125f}, half = 0.5f;
    Tv_Option(w("resolution"), size, 0);
    Tv_Camera("lightwave", w("active"), 1, w("formmappingtype"), w("type4"), 1, w("projection"), w("perspective"), 1,
              w("window"), window, 1, 0);
    Tv_Animation(w("framerate"), &rate, 0);
    int32_t start = -1, end = -1, coordinates = 0;
    Tv_Inquire_Animation(w("starttime"), &start, 1, w("endtime"), &end, 1, 0);
    Tv_Background(w("colorscheme"), w("gradient"), w("horiztop"), w("enabled"), w("on"), w("horizpos"), &half, 0);
    Tv_Background(w("colorscheme"), w("surfacelink"), "TAVRIN___BG_SURFACE_NAME", 0);
    add_node("a");
    Tv_TxtrParam(w("instance"), "a", w("enabled"), w("on"), 1, w("coordsystem"), w("world"), 1, w("model"), w("box"), 1,
                 0);
    float origin[3];
    Tv_Inquire_TxtrParam(w("instance"), "a", w("coordsystem"), &coordinates, 1, w("origin"), origin, 1, 0);
    const std::vector<std::string> lines = trace();
    EXPECT_THAT(
        lines,
        testing::ElementsAreArray(std::vector<std::string>{
            R"(["Tv_Option","resolution",[480,360],0])",
            R"(["Tv_Camera","'lightwave'","active",1,"formmappingtype","type4",1,"projection","perspective",1,"window",[3.125,3.125],1,0])",
            R"(["Tv_Animation","framerate",29,0])", R"(["Tv_Inquire_Animation","starttime",0,1,"endtime",0,1,0])",
            R"(["Tv_Background","colorscheme","gradient","horiztop","enabled","on","horizpos",0.5,0])",
            R"(["Tv_Background","colorscheme","surfacelink","'TAVRIN___BG_SURFACE_NAME'",0])",
            R"(["Tv_Add_Empty_Node","instance","'a'",0])", R"(["Tv_Attach","instance","'a'","instance","'world'",0])",
            R"(["Tv_TxtrParam","instance","'a'","enabled","on",1,"coordsystem","world",1,"model","box",1,0])",
            R"(["Tv_Inquire_TxtrParam","instance","'a'","coordsystem","world",1,"origin",[0,0,0],1,0])"}));
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
