// Scenes that are cut off, oversized or meant to harm, and memory that runs out: every run ends, in order, with nothing
// held back. The sanitizers watch.

#include "lib/toolkit/memory.h"
#include "tests/scene/scene_fixture.h"

using namespace scene_tests;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

class Hostile : public SceneTest {
protected:
    // With every keyword that does something.
    std::string whole_scene()
    {
        file("ship.lwo", triangle());
        return head + "FirstFrame 1\nLastFrame 60\nFrameStep 1\nFramesPerSecond 25\n" +
               "LoadObject Work:Objects/Ship.lwo\n" +
               motion("ObjectMotion", {{{0, 0, 0, 0, 0, 0, 1, 1, 1}, 0}, {{1, 2, 3, 10, 20, 30, 2, 2, 2}, 30}}, 2) +
               "PivotPoint 1 " + envelope({2}) + " 3\nObjDissolve " + envelope({0, 1}) +
               "LoadObject ship.lwo\nParentObject 1\nAddBone\nLoadObject gone.lwo\nParentObject 9\n"
               "AddNullObject a handle\n" +
               placed_at("ObjectMotion", 1, 2, 3) + "ParentObject 2\nAmbientColor 1 2 3\nAmbIntensity 0.25\n" +
               "AddLight\nLightName Key\n" + placed_at("LightMotion", 5, 5, -5) +
               "LightColor 255 255 255\nLgtIntensity 1\nLightType 2\nConeAngle 30\nEdgeAngle 5\nFalloff 1\n"
               "ShadowMapSize 512\nShadowFuzziness 1.0\nUseConeAngle 1\nAddLight\nLightName Fill\nLightType 0\n" +
               placed_at("LightMotion", 0, 9, 0) +
               motion("CameraMotion", {{{0, 0, -9, 0, 0, 0, 1, 1, 1}, 0}, {{0, 9, -9, 0, 45, 0, 1, 1, 1}, 30}}) +
               "ZoomFactor 3.2\nResolution 1\nCustomSize 320 200\nBGImage sky.iff\nSolidBackdrop 0\nBackdropColor 1 2 "
               "3\n"
               "ZenithColor 1 2 3\nSkyColor 1 2 3\nGroundColor 1 2 3\nNadirColor 1 2 3\nZenithOnly 0\n"
               "LookAheadFrames 3\nTargetObject 1\n";
    }

    // Converts and looks whether anything was kept that the scene doesn't own.
    Conversion convert_and_count(const std::string& scene, const Words& words = {})
    {
        Conversion run = convert(scene, words);
        places_.clear();
        EXPECT_TRUE(tv::place_all(tv::scene(), 0, 100000, places_));
        plugin_test::start_fresh();
        const uint64_t before = held_;
        held_ = tv::allocations_held();
        if (before) {
            EXPECT_EQ(held_, before);
        }
        return run;
    }

    uint64_t held_ = 0;                 // blocks between two runs
    std::vector<tv::Placement> places_; // what hung together at the end of the last run
};

TEST_F(Hostile, EveryPrefixOfASceneEnds)
{
    const std::string scene = whole_scene();
    convert_and_count(scene);
    EXPECT_EQ(convert(scene).result, 0);
    int good = 0;
    for (std::size_t length = 4; length < scene.size(); ++length) {
        const int first_key_only = static_cast<int>(length % 2);
        good += convert_and_count(scene.substr(0, length), {{"import_keyframe0_only", first_key_only}}).result == 0;
        ASSERT_GE(places_.size(), 2u) << length; // the world and the root at least
    }
    EXPECT_GT(good, 100); // cut between keywords or within ignored ones
}

TEST_F(Hostile, EachAllocationMayFail)
{
    const std::string scene = whole_scene();
    convert_and_count(scene);
    const uint64_t start = tv::allocations_made();
    convert_and_count(scene);
    const uint64_t needed = tv::allocations_made() - start;
    ASSERT_GT(needed, 40u);
    for (uint64_t n = 1; n <= needed; ++n) {
        tv::fail_allocation(n);
        const Conversion run = convert_and_count(scene);
        tv::fail_allocation(0);
        EXPECT_LE(run.messages.size(), 8u) << n;
    }
    EXPECT_EQ(convert_and_count(scene).result, 0);
}

TEST_F(Hostile, AFatalErrorWithinAnObjectLeavesNothingBehind)
{
    const std::string scene = whole_scene();
    convert_and_count(scene);
    // The object reader's own arrays are the first that it reports at level 5.
    bool fatal = false;
    for (uint64_t n = 8; n < 40 && !fatal; ++n) {
        tv::fail_allocation(n);
        const Conversion run = convert_and_count(scene);
        for (const std::string& message : run.messages) fatal = fatal || message.rfind("5 ", 0) == 0;
        if (fatal) {
            EXPECT_EQ(run.result, 1);
        }
    }
    EXPECT_TRUE(fatal);
    tv::fail_allocation(0);
    EXPECT_EQ(convert_and_count(scene).result, 0);
}

TEST_F(Hostile, LineEndsChangeNothing)
{
    // But for what the host is told of positions.
    const auto calls = [this](const std::string& scene) {
        Strings kept = convert(scene).calls;
        std::erase_if(kept, [](const std::string& call) { return call.starts_with("[\"Import_IO_Check_For_Abort"); });
        return kept;
    };
    const std::string scene = whole_scene();
    const Strings expected = calls(scene);
    for (const char* end : {"\r\n", "\r"}) {
        std::string other;
        for (const char c : scene) other += c == '\n' ? std::string(end) : std::string(1, c);
        EXPECT_EQ(calls(other), expected);
    }
}

TEST_F(Hostile, TheHostIsAskedAtEveryTenthKeywordAndMayStop)
{
    // Tokens that are no keywords don't count, however many.
    std::string scene = head;
    for (int i = 0; i < 9; ++i) scene += "Overscan 0 0 0 0 0 0 0 0 0 0 0 0\n";
    EXPECT_THAT(convert(scene).calls_of("Import_IO_Check_For_Abort"), ElementsAre(HasSubstr("")));
    scene = head;
    for (int i = 0; i < 10000; ++i) scene += "FogType\n";
    // The position is that of the stream, block by block.
    const Conversion run = convert(scene, {}, 2);
    EXPECT_EQ(run.result, 1);
    EXPECT_THAT(run.messages, IsEmpty());
    EXPECT_THAT(run.calls, ElementsAre("[\"Import_IO_Check_For_Abort\",8192,80008,0,0,0]",
                                       "[\"Import_IO_Check_For_Abort\",8192,80008,0,0,1]"));
    EXPECT_EQ(convert(scene).calls_of("Import_IO_Check_For_Abort").size(), 1000u);
}

TEST_F(Hostile, OperandsThatAreMissingOrBadEndTheRead)
{
    const auto fails = [this](const std::string& text) {
        const Conversion run = convert(head + text);
        EXPECT_EQ(run.result, 1) << text;
        return run.messages;
    };
    const std::string integer_at_end =
        "4 Expecting an integer but premature End-of-file reached instead. Line number = ";
    EXPECT_THAT(fails("FirstFrame"), ElementsAre(integer_at_end + "2. Last token parsed = 'FirstFrame'\n"));
    EXPECT_THAT(fails("FrameStep x"), ElementsAre("4 Syntax error. Expecting an integer number. Line number = 2. Last "
                                                  "token parsed = 'FrameStep'\n"));
    EXPECT_THAT(
        fails("AddNullObject n\n\n\nPivotPoint 1 2\n"),
        ElementsAre(HasSubstr("floating point number but premature End-of-file reached instead. Line number = 3. "
                              "Last token parsed = 'PivotPoint'\n")));
    EXPECT_THAT(fails("ObjectMotion x 9 1 1 1 1 1 1 1 1 1 1 0 0 0 0 0\n"), IsEmpty()); // no "EndBehavior"
    EXPECT_THAT(fails("LoadObject\n"), IsEmpty());
    EXPECT_THAT(fails("AddNullObject \t \n"), IsEmpty());
    EXPECT_THAT(fails("BGImage\n"), IsEmpty());
    EXPECT_THAT(fails("Antialiasing " + envelope({1}) + "(envelope) 1 1 x"),
                ElementsAre("4 Syntax error. Expecting a floating point number. Line number = 8. Last token parsed = "
                            "'(envelope)'\n"));
    // What ends behind the last operand is complete, with a line end or without.
    EXPECT_EQ(convert(head + "FirstFrame 1\nLastFrame 2").result, 0);
    EXPECT_EQ(convert(head + "Antialiasing").result, 0);
}

TEST_F(Hostile, AMotionWithoutEndBehaviorLosesTheNextKeyword)
{
    const Conversion run =
        convert(head + "AddNullObject a\nAddNullObject b\nObjectMotion x 9 1 1 1 1 0 0 0 1 1 1 0 0 0 0 0\n"
                       "ParentObject 1\n");
    EXPECT_EQ(run.result, 0);
    EXPECT_THAT(run.messages, ElementsAre("4 Expecting token 'EndBehavior' after motion curve data Line number = 5. "
                                          "Last token parsed = 'ObjectMotion'\n"));
    EXPECT_THAT(run.calls_of("Tv_Detach"), IsEmpty());
}

TEST_F(Hostile, ACountThatTheFileCannotHoldCostsNoMemory)
{
    for (const char* keyword : {"ObjectMotion x", "(envelope)"}) {
        for (const char* count : {"32767", "-1", "0", "32768", "65537"}) {
            const uint64_t made = tv::allocations_made();
            convert_and_count(head + keyword + " 9 " + count + " 1 2 3");
            EXPECT_LT(tv::allocations_made() - made, 40u) << keyword << count;
        }
    }
    // Envelopes in envelopes, each with the most keys.
    std::string scene = head + "ZoomFactor ";
    for (int i = 0; i < 100000; ++i) scene += "(envelope) 1 32767\n";
    const Conversion run = convert_and_count(scene);
    EXPECT_EQ(run.result, 1);
    EXPECT_EQ(run.messages.size(), 257u);
}

TEST_F(Hostile, TooManyObjectsEndTheReadInOrder)
{
    std::string scene = head;
    for (int i = 0; i < 32767; ++i) scene += "AddNullObject n\n";
    scene += "ParentObject 32766\n";
    EXPECT_EQ(convert_and_count(scene).result, 0);
    for (int i = 0; i < 35000; ++i) scene += "AddNullObject n\n"; // 16 bits would be back at a small number
    const Conversion run = convert_and_count(scene);
    EXPECT_EQ(run.result, 1);
    EXPECT_THAT(run.messages, ElementsAre("4 Scene file 'test.lws' has more than 32767 objects. Reading stops at line "
                                          "number 32770.\n"));
}

TEST_F(Hostile, BytesThatNoSceneHoldsAreTokensLikeAnyOther)
{
    std::string scene = head + "AddNullObject M\xfchle\nParentObject \xff\n";
    const Conversion run = convert(scene);
    EXPECT_EQ(run.result, 1);
    EXPECT_NE(tv::scene().find(tv::Kind::instance, "M\xfchle"), tv::no_id);
    scene = head;
    for (int i = 0; i < 65536; ++i) scene += static_cast<char>(i * 7 % 256);
    EXPECT_EQ(convert_and_count(scene).result, 0);
}

} // namespace
