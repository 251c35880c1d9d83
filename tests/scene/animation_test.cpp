// Worked numbers of keys, lights, camera, backdrop and time line.
#include <cmath>

#include "lib/toolkit/animation/animation.h"
#include "tests/scene/scene_fixture.h"

using namespace scene_tests;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

class Animation : public SceneTest {
protected:
    const tv::Instance& null_object() { return tv::scene().instances[tv::scene().find(tv::Kind::instance, "n")]; }

    // A null object with these keys.
    Conversion keys(const std::vector<Key>& list, int end = 0, const std::string& more = "", const Words& words = {})
    {
        return convert(head + more + "AddNullObject n\n" + motion("ObjectMotion", list, end), words);
    }

    std::vector<int32_t> key_times()
    {
        std::vector<int32_t> times;
        for (const tv::Key& key : null_object().channels->position[0].keys) times.push_back(key.time);
        return times;
    }
};

std::vector<double> at_rest(double x)
{
    return {x, 0, 0, 0, 0, 0, 1, 1, 1};
}

TEST_F(Animation, ZAndTheAnglesChangeTheirSigns)
{
    keys({{{1, 2, 3, 10, 20, 30, 4, 5, 6}, 0, 0.1, -0.2, 0.3}});
    const tv::InstanceChannels& channels = *null_object().channels;
    const double degree = 3.141592653589793 / 180.0;
    const double expected[] = {1, 2, -3, 4, 5, 6, -20 * degree, -10 * degree, 30 * degree};
    for (std::size_t i = 0; i < 9; ++i) {
        const auto& group = i < 3 ? channels.position : i < 6 ? channels.scale : channels.rotation;
        ASSERT_EQ(group[i % 3].keys.size(), 1u);
        const tv::Key& key = group[i % 3].keys[0];
        EXPECT_EQ(key.value, static_cast<float>(expected[i])) << i;
        EXPECT_EQ(key.tension, 0.1f);
        EXPECT_EQ(key.continuity, -0.2f);
        EXPECT_EQ(key.bias, 0.3f);
    }
}

TEST_F(Animation, TimesCount4800ToTheSecond)
{
    const std::vector<Key> list = {{at_rest(0), 0}, {at_rest(0), 15}, {at_rest(0), -1}, {at_rest(0), 1}};
    keys(list);
    EXPECT_THAT(key_times(), ElementsAre(0, 2400, -160, 160));
    keys(list, 0, "FramesPerSecond 29.97\n");
    EXPECT_THAT(key_times(), ElementsAre(0, 2402, -160, 160));
    // Frames are 16 bits wide.
    keys({{at_rest(0), 65537}, {at_rest(0), 32767}});
    EXPECT_THAT(key_times(), ElementsAre(160, 5242720));
    // No frame rate has no times; what comes must be a number.
    keys(list, 0, "FramesPerSecond 0\n");
    EXPECT_THAT(key_times(), ElementsAre(0, INT32_MAX, INT32_MIN, INT32_MAX));
    keys(list, 0, "FramesPerSecond -nan\n");
    EXPECT_THAT(key_times(), ElementsAre(0, 0, 0, 0));
    keys(list, 0, "FramesPerSecond -30\n");
    EXPECT_THAT(key_times(), ElementsAre(0, -2400, 160, -160));
}

TEST_F(Animation, TheEndBehaviorOfTheFileGoesToBothEnds)
{
    const struct {
        int number;
        tv::Extrapolation expected;
    } cases[] = {{0, tv::Extrapolation::reset},
                 {1, tv::Extrapolation::constant},
                 {2, tv::Extrapolation::cycle},
                 {3, tv::Extrapolation::reset},
                 {-1, tv::Extrapolation::reset}};
    for (const auto& one : cases) {
        const Conversion run = keys({{at_rest(0), 0}, {at_rest(1), 30}}, one.number);
        EXPECT_EQ(null_object().channels->position[0].before, one.expected) << one.number;
        EXPECT_EQ(null_object().channels->position[0].after, one.expected) << one.number;
        // Earlier keys say "reset" whatever the file says.
        EXPECT_THAT(run.calls_of("Tv_AnimController")[0], HasSubstr("\"preextraptype\",\"reset\""));
    }
}

TEST_F(Animation, AKeyCountIs16BitsWide)
{
    for (const char* count : {"0", "-1", "32768", "40000"}) {
        const Conversion run =
            convert(head + "AddNullObject n\nObjectMotion (unnamed) 9 " + count + " EndBehavior 1\n");
        EXPECT_EQ(run.result, 0) << count;
        EXPECT_THAT(run.calls_of("Tv_AnimController"), IsEmpty()) << count;
        EXPECT_THAT(run.calls_of("Tv_Instance"), IsEmpty()) << count;
    }
    const std::string one_key = " 1 2 3 0 0 0 1 1 1 0 0 0 0 0 EndBehavior 1\n";
    EXPECT_EQ(convert(head + "AddNullObject n\nObjectMotion (unnamed) 9 65537" + one_key).result, 0);
    EXPECT_EQ(key_times().size(), 1u);
    EXPECT_EQ(convert(head + "AddNullObject n\nObjectMotion (unnamed) 9 32767" + one_key).result, 1);
}

TEST_F(Animation, APivotIsTakenBehindTheScaleInTheMatrixOfTheFirstKey)
{
    convert(head + "AddNullObject n\nPivotPoint 1 0 0\n" + motion("ObjectMotion", {{{0, 0, 0, 0, 0, 0, 2, 2, 2}}}),
            {{"import_keyframe0_only", 1}});
    // (1, 0, 0) goes to (1, 0, 0) and not to the origin.
    EXPECT_EQ(null_object().matrix[0], 2.0f);
    EXPECT_EQ(null_object().matrix[12], -1.0f);
}

TEST_F(Animation, TheMotionOfABoneGoesNowhere)
{
    const Conversion run = convert(head + "AddNullObject n\nAddBone\n" + placed_at("ObjectMotion", 1, 2, 3));
    EXPECT_EQ(run.result, 0);
    EXPECT_THAT(run.calls_of("Tv_AnimController"), IsEmpty());
    // The object's own has gone when the bone came.
    keys({{at_rest(1)}}, 0, "");
    EXPECT_EQ(key_times().size(), 1u);
}

// ---- lights --------------------------------------------------------------------------------------------------------

TEST_F(Animation, ALightIsSentAsFarAsItIsComplete)
{
    const std::string light = "AddLight\nLightName Sun\nLightColor 255 51 0\nLgtIntensity " + envelope({0.5, 1});
    const Conversion without_motion = convert(head + light + "LightType 1\n");
    EXPECT_EQ(without_motion.calls_of("Tv_Light").size(), 1u);
    const Conversion without_type = convert(head + light + placed_at("LightMotion", 1, 2, 3));
    EXPECT_THAT(without_type.calls_of("Tv_Light"),
                ElementsAre("[\"Tv_Light\",\"'Sun'\",\"model\",\"direction\",0]",
                            "[\"Tv_Light\",\"'Sun'\",\"color\",\"rgb\",[1,0.200000003,0],0]",
                            "[\"Tv_Light\",\"'Sun'\",\"intensity\",0.5,0]"));
    const Conversion odd_type = convert(head + light + placed_at("LightMotion", 1, 2, 3) + "LightType 3\n");
    EXPECT_THAT(odd_type.text(), testing::Not(HasSubstr("\"point\"")));
    EXPECT_THAT(odd_type.text(), HasSubstr("[\"Tv_Light\",\"'Sun'\",\"shinefrom\",[1,2,-3],0]"));
}

TEST_F(Animation, ASpotAimsAsFarAsTheMiddleOfTheScene)
{
    const auto aim = [this](const std::string& objects, double h, double p) {
        convert(head + objects + "AddLight\nLightName Spot\n" +
                motion("LightMotion", {{{0, 0, 100, h, p, 0, 1, 1, 1}}}) + "LightType 2\n");
        const tv::Light& light = tv::scene().lights[tv::scene().find(tv::Kind::light, "Spot")];
        return light.shine_at.value_or(tv::Vec3{});
    };
    const auto expect_near = [](const tv::Vec3& v, double x, double y, double z) {
        EXPECT_NEAR(v[0], x, 1e-4);
        EXPECT_NEAR(v[1], y, 1e-4);
        EXPECT_NEAR(v[2], z, 1e-4);
    };
    expect_near(aim("", 0, 0), 0, 0, -104); // an empty scene: 4
    expect_near(aim("", 90, 0), 4, 0, -100);
    expect_near(aim("", 0, 90), 0, -4, -100);
    file("ship.lwo", triangle());
    // The middle of the triangle's box is (0.5, 0.5, -1) once Z is turned.
    const double away = std::sqrt(0.25 + 0.25 + 99.0 * 99.0);
    expect_near(aim("LoadObject ship.lwo\n", 90, 0), away, 0, -100);
    expect_near(aim("LoadObject ship.lwo\n" + placed_at("ObjectMotion", -0.5, -0.5, 99), 0, 0), 0, 0, -104);
}

TEST_F(Animation, ShadowMapsAboveTheUsualSizeAreTold)
{
    const auto sizes = [this](const std::string& more) {
        const Conversion run =
            convert(head + "AddLight\nLightName L\n" + placed_at("LightMotion", 0, 0, 0) + "LightType 1\n" + more);
        Strings found;
        for (const std::string& call : run.calls_of("Tv_Light"))
            if (call.find("shadowmapsize") != std::string::npos || call.find("decay") != std::string::npos)
                found.push_back(call.substr(18));
        return found;
    };
    EXPECT_THAT(sizes("ShadowMapSize 128\nFalloff 0\n"), ElementsAre("\"decay\",0,0]"));
    EXPECT_THAT(
        sizes("ShadowMapSize 129\nFalloff 0.25\n"),
        ElementsAre("\"shadowmap\",\"'default'\",\"shadowmapsize\",129,\"useglobalvalues\",\"enabled\",\"off\",0]",
                    "\"decay\",1,0]"));
    EXPECT_THAT(sizes("ShadowMapSize 65536\n"), ElementsAre("\"decay\",0,0]"));
}

TEST_F(Animation, LightKeywordsWithoutALightAreHarmless)
{
    EXPECT_THAT(
        convert(head + "LightColor 1 2 3\nLightType 0\n" + placed_at("LightMotion", 0, 0, 0)).calls_of("Tv_Light"),
        IsEmpty());
    // "AddLight" with another keyword behind it makes no light and loses that keyword.
    const Conversion run = convert(head + "AddLight\nLightColor 1 2 3\nLightType 0\n");
    EXPECT_EQ(run.result, 0);
    EXPECT_THAT(run.calls_of("Tv_Light"), IsEmpty());
    for (const char* cut : {"AddLight", "AddLight\n", "AddLight\nLightName", "AddLight\nLightName\n"}) {
        const Conversion short_run = convert(head + cut);
        // The last line's first keyword is the last that counts, also where what it needs is missing.
        EXPECT_EQ(short_run.result, 1) << cut;
        EXPECT_THAT(short_run.messages, IsEmpty()) << cut;
    }
}

// ---- camera --------------------------------------------------------------------------------------------------------

TEST_F(Animation, TheZoomShowsInTheWindowAlone)
{
    const auto window = [this](const std::string& zoom) {
        convert(head + zoom + placed_at("CameraMotion", 0, 0, 0));
        EXPECT_EQ(tv::scene().cameras[0].focal_length, 5.0f);
        return tv::scene().cameras[0].window[1];
    };
    EXPECT_EQ(window(""), 3.125f);
    EXPECT_EQ(window("ZoomFactor 2\n"), 5.0f);
    EXPECT_EQ(window("ZoomFactor " + envelope({2, 8})), 5.0f);
    EXPECT_EQ(window("ZoomFactor 0.001\n"), 10.0f);
    EXPECT_EQ(window("ZoomFactor -3\n"), 10.0f);
}

TEST_F(Animation, ThePictureSizeComesFromCustomSizeAlone)
{
    const auto size = [this](const std::string& text) {
        convert(head + text + placed_at("CameraMotion", 0, 0, 0));
        return tv::scene().resolution;
    };
    EXPECT_THAT(size("Resolution 3\n"), ElementsAre(480, 360));
    EXPECT_THAT(size("CustomSize 640 480\n"), ElementsAre(640, 480));
    EXPECT_THAT(size("CustomSize 640 -1\n"), ElementsAre(480, 360));
    EXPECT_THAT(size("CustomSize 65535 480\n"), ElementsAre(480, 360));
}

TEST_F(Animation, TheCameraKeepsTheAimDistanceOfItsFirstKey)
{
    file("ship.lwo", triangle());
    const std::string path =
        motion("CameraMotion", {{{0.5, 0.5, 11, 0, 0, 0, 1, 1, 1}, 0}, {{0.5, 0.5, 501, 0, 90, 7, 1, 1, 1}, 30}});
    const Conversion run = convert(head + "LoadObject ship.lwo\n" + path);
    const tv::Camera& camera = tv::scene().cameras[0];
    EXPECT_EQ(camera.look_at, (tv::Vec3{0.5f, 0.5f, -21})); // 10 to the middle of the box at (0.5, 0.5, -1)
    EXPECT_EQ(camera.look_up, (tv::Vec3{0, 1, 0}));
    EXPECT_EQ(camera.channels.look_from[2].keys[1].value, -501.0f);
    EXPECT_NEAR(camera.channels.look_at[1].keys[1].value, 0.5 - 10, 1e-4);
    EXPECT_EQ(camera.channels.roll.keys[1].value, 7.0f);
    EXPECT_EQ(run.calls_of("Tv_Option").size(), 3u); // once for the camera, once a key
    const Conversion still = convert(head + path, {{"import_keyframe0_only", 1}});
    EXPECT_EQ(still.calls_of("Tv_Option").size(), 1u);
    EXPECT_THAT(still.calls_of("Tv_AnimController"), IsEmpty());
    EXPECT_THAT(convert(head + "CameraMotion x 9 0\n").calls_of("Tv_Camera"), IsEmpty());
}

// ---- time line and backdrop ----------------------------------------------------------------------------------------

TEST_F(Animation, TheTimeLineGrowsForScenesThatMove)
{
    const std::string range = "FirstFrame 0\nLastFrame 60\nFramesPerSecond 29.97\n";
    const std::string moving = motion("CameraMotion", {{at_rest(0), 0}, {at_rest(0), 9}});
    EXPECT_THAT(convert(head + range + placed_at("CameraMotion", 0, 0, 0)).calls_of("Tv_Animation"), IsEmpty());
    EXPECT_THAT(convert(head + range + moving).calls_of("Tv_Animation"),
                ElementsAre("[\"Tv_Animation\",\"framerate\",29,0]", "[\"Tv_Animation\",\"endtime\",9609,0]"));
    EXPECT_THAT(convert(head + "FirstFrame -30\n" + moving).calls_of("Tv_Animation"),
                ElementsAre("[\"Tv_Animation\",\"framerate\",30,0]", "[\"Tv_Animation\",\"starttime\",-4800,0]",
                            "[\"Tv_Animation\",\"endtime\",160,0]"));
    // One key of an envelope is enough, also behind a keyword that is ignored.
    EXPECT_THAT(convert(head + "ObjDissolve " + envelope({1})).calls_of("Tv_Animation"),
                ElementsAre("[\"Tv_Animation\",\"framerate\",30,0]", "[\"Tv_Animation\",\"endtime\",160,0]"));
    EXPECT_THAT(convert(head + "FramesPerSecond 0\n" + moving).calls_of("Tv_Animation"),
                ElementsAre("[\"Tv_Animation\",\"framerate\",0,0]", "[\"Tv_Animation\",\"endtime\",2147483647,0]"));
    EXPECT_THAT(convert(head + range + moving, {{"import_keyframe0_only", 1}}).calls_of("Tv_Animation"), IsEmpty());
}

TEST_F(Animation, TheBackdropIsImageThenSolidThenZenithThenGradient)
{
    const std::string all = "BGImage Work:Pics/SKY.LWO\nSolidBackdrop 1\nBackdropColor 51 0 300\nZenithOnly 1\n"
                            "ZenithColor 255 0 0\nSkyColor 0 255 0\nGroundColor 0 0 255\nNadirColor 0 0 0\n";
    const auto background = [this](const std::string& text) { return convert(head + text).calls_of("Tv_Background"); };
    EXPECT_THAT(background(all),
                ElementsAre("[\"Tv_Background\",\"colorscheme\",\"surfacelink\",\"'TAVRIN___BG_SURFACE_NAME'\",0]"));
    EXPECT_THAT(convert(head + all).text(), HasSubstr("\"textureimage\",1,\"'sky.iff'\""));
    EXPECT_THAT(background("SolidBackdrop 1\nZenithOnly 1\nBackdropColor 51 0 300\n"),
                ElementsAre("[\"Tv_Background\",\"colorscheme\",\"color\",0]",
                            "[\"Tv_Background\",\"colorscheme\",\"color\",\"rgb\",[0.200000003,0,1],0]"));
    EXPECT_THAT(background("SolidBackdrop 1\n"), ElementsAre("[\"Tv_Background\",\"colorscheme\",\"color\",0]"));
    EXPECT_THAT(background("SolidBackdrop 65537\n").size(), 1u);
    EXPECT_THAT(background("ZenithOnly 1\nZenithColor 255 0 0\nBackdropColor 1 1 1\n"),
                ElementsAre("[\"Tv_Background\",\"colorscheme\",\"color\",0]",
                            "[\"Tv_Background\",\"colorscheme\",\"color\",\"rgb\",[1,0,0],0]"));
    const std::string gradient = "[\"Tv_Background\",\"colorscheme\",\"gradient\",";
    EXPECT_THAT(
        background("SolidBackdrop 0\nBackdropColor 9 9 9\nNadirColor 0 0 0\nZenithColor 255 255 255\n"),
        ElementsAre(gradient + "\"horiztop\",\"enabled\",\"on\",\"horizbot\",\"enabled\",\"on\",\"horizpos\",0.5,0]",
                    gradient + "\"color1\",\"rgb\",[1,1,1],0]", gradient + "\"color4\",\"rgb\",[0,0,0],0]"));
}

} // namespace
