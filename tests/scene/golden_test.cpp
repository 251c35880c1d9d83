// Whole conversions as a person reads them: the calls between the root's making and the end of the run.
#include "tests/scene/scene_fixture.h"
#include "tests/support/golden.h"

using namespace scene_tests;
using plugin_test::matches_golden;

namespace {

class Golden : public SceneTest {
protected:
    // The calls with the reports among them; the background, the same in most scenes, has a golden text of its own.
    testing::AssertionResult agrees(const std::string& name, const std::string& scene, const Words& words = {})
    {
        Strings lines = convert(head + scene, words).calls;
        std::erase_if(lines, [](const std::string& line) { return line.find("\"gradient\"") != std::string::npos; });
        return matches_golden("scene_" + name + ".jsonl", lines);
    }

    testing::AssertionResult agrees_in_both_modes(const std::string& name, const std::string& scene)
    {
        const testing::AssertionResult moving = agrees(name + "_keyframes", scene);
        return moving ? agrees(name + "_first_key", scene, {{"import_keyframe0_only", 1}}) : moving;
    }
};

TEST_F(Golden, AnEmptySceneIsARootAndABackground)
{
    const plugin_test::Run run = [this] {
        file("Empty Scene.lws", "LWSC\n1\n");
        return plugin_test::convert("Empty Scene.lws", {{"print_statistics", 0}});
    }();
    EXPECT_EQ(run.result, 0);
    EXPECT_TRUE(matches_golden("scene_empty.jsonl", run.trace));
}

TEST_F(Golden, AnObjectNamedTwiceIsReadOnce)
{
    file("ship.lwo", triangle());
    EXPECT_TRUE(agrees("reuse", "LoadObject Work:Objects/Ship.lwo\nPivotPoint 1 2 3\nLoadObject C:\\SHIP.LWO\n"));
}

TEST_F(Golden, AMissingFileIsANullInstance)
{
    EXPECT_TRUE(agrees("missing_file", "LoadObject Work:Gone Ship.LWO\nAddNullObject two words\n"));
}

TEST_F(Golden, KeysBecomeChannelsOrAMatrix)
{
    const std::vector<Key> keys = {{{1, 2, 3, 90, 0, 0, 1, 1, 1}, 0, 0.5, 0, 0},
                                   {{4, 5, 6, 0, 45, 0, 2, 2, 2}, 30, 0, -0.25, 0.125}};
    EXPECT_TRUE(agrees_in_both_modes("motion", "AddNullObject moving\n" + motion("ObjectMotion", keys, 2)));
}

TEST_F(Golden, EachEndBehaviorHasItsWord)
{
    for (int end = 0; end < 3; ++end) {
        const std::string name = std::string("end_") + (end == 0 ? "reset" : end == 1 ? "constant" : "cycle");
        EXPECT_TRUE(agrees(name, "AddNullObject n\n" + motion("ObjectMotion", {{{0, 0, 0, 0, 0, 0, 1, 1, 1}}}, end)));
    }
}

// The four kinds of parent: a null, an object, an object with a pivot, and one that was split by surface.
TEST_F(Golden, ParentsThatHoldGeometryAreWrapped)
{
    lw_tools::ObjectWriter split;
    split.surface_names = {"hull", "sail"};
    const unsigned a = split.point(0, 0, 0), b = split.point(1, 0, 0), c = split.point(0, 1, 0);
    split.polygon({a, b, c}, 1);
    split.polygon({a, c, b}, 2);
    file("ship.lwo", triangle());
    file("boat.lwo", split.to_bytes());
    const std::string at = placed_at("ObjectMotion", 1, 0, 0);
    const std::string child = "AddNullObject child\nParentObject 1\n";
    EXPECT_TRUE(agrees_in_both_modes("wrap_null", "AddNullObject parent\n" + at + child));
    EXPECT_TRUE(agrees_in_both_modes("wrap_object", "LoadObject ship.lwo\n" + at + child));
    EXPECT_TRUE(agrees_in_both_modes("wrap_pivot", "LoadObject ship.lwo\nPivotPoint 1 2 3\n" + at + child));
    EXPECT_TRUE(agrees_in_both_modes("wrap_split", "LoadObject boat.lwo\n" + at + child));
}

TEST_F(Golden, ParentNumbersOutOfRange)
{
    EXPECT_TRUE(agrees("parent_out_of_range", "AddNullObject a\nParentObject 3\nAddNullObject b\nParentObject -1\n"));
}

TEST_F(Golden, LightsOfEachType)
{
    std::string scene;
    for (const char* type : {"0", "1", "2"})
        scene += "AddLight\nLightName Lamp of type\n" +
                 motion("LightMotion", {{{1, 2, 3, 90, 0, 0, 1, 1, 1}}, {{9, 9, 9, 0, 0, 0, 1, 1, 1}, 30}}) +
                 "LightColor 255 51 0\nLgtIntensity 0.75\nLightType " + type +
                 "\nConeAngle 30\nEdgeAngle 5\nFalloff 0.5\nShadowMapSize 256\n";
    EXPECT_TRUE(agrees("lights", scene + "AmbientColor 0 0 255\nAmbIntensity 0.25\n"));
}

TEST_F(Golden, TheCameraIsAPath)
{
    EXPECT_TRUE(agrees_in_both_modes(
        "camera", motion("CameraMotion", {{{1, 2, 3, 0, 0, 0, 1, 1, 1}, 0}, {{1, 2, 3, 90, 0, 30, 1, 1, 1}, 30, 0.5}}) +
                      "ZoomFactor 2\nCustomSize 640 480\n"));
}

TEST_F(Golden, BackdropsOfEachKind)
{
    const std::string colors = "BackdropColor 51 0 255\nZenithColor 255 0 0\nSkyColor 0 255 0\nGroundColor 0 0 255\n";
    std::string all;
    for (const char* kind : {"BGImage Work:Pics/Sky.LBM\n", "SolidBackdrop 1\n", "ZenithOnly 1\n", "SolidBackdrop 0\n"})
        all += convert(head + kind + colors).text();
    EXPECT_TRUE(matches_golden("scene_backdrop.jsonl", all));
}

TEST_F(Golden, TheTimeLine)
{
    EXPECT_TRUE(
        agrees("time_line", "FirstFrame -15\nLastFrame 60\nFramesPerSecond 29.97\nObjDissolve " + envelope({0, 1})));
}

TEST_F(Golden, MessagesOfTheTokenizer)
{
    std::string all;
    for (const char* scene :
         {"FirstFrame", "ZoomFactor\n", "FirstFrame +1\n", "ZoomFactor .5\n", "ZoomFactor -\n",
          "ZoomFactor (envelope) 1 1 0.5 0 0 0 0 0 FirstFrame 3\n", "ZoomFactor (envelope) 1 1 0.5 0 0 0 0 0\n",
          "LgtIntensity (envelope) 1 2\n0.5 0 0 0 0 0\n1 x\n", "ObjectMotion (unnamed)\n9\n1\n1 2 3\n"})
        all += convert(head + scene).text();
    EXPECT_TRUE(matches_golden("scene_messages.jsonl", all));
}

} // namespace
