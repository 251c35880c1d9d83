#include "restore/facts/scene_reader.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "restore/facts/references.h"
#include "restore/facts/scene_text.h"
#include "tests/restore/file_of.h"

namespace {

using restore::SceneFacts;
using testing::ElementsAre;
using testing::HasSubstr;

SceneFacts facts_of(std::string_view text)
{
    return restore::read_scene(restore_test::FileOf(text));
}

std::string with_line_ends(std::string text, const std::string& end)
{
    for (std::size_t at = 0; (at = text.find('\n', at)) != std::string::npos; at += end.size())
        text.replace(at, 1, end);
    return text;
}

std::string_view text_of(restore::Span span, std::string_view text)
{
    return text.substr(span.begin, span.end - span.begin);
}

constexpr std::string_view scene_text = R"(LWSC
1

FirstFrame 1
LastFrame 60
FrameStep 2
FramesPerSecond 25.000000

LoadObject Toys:Objects/Sail boat.lwo
ShowObject 7 7
DisplacementMap Ripples
TextureAmplitude (envelope)
  1
  1
  0.5
  1 0 0 0 0
EndBehavior 2
ObjectMotion (unnamed)
  9
  2
  -29.3434 0.0600761 -2.1e-006 30 0 -3 1 2 1
  0 0 0 0 0
  4 5 6 10 20 30 1 2 1
  42 1 0.5 -0.5 1
EndBehavior 2
ParentObject 2
PivotPoint 0 1 -0.5
ObjDissolve (envelope)
  1
  2
  0
  0 0 0 0 0
  1
  40 0 0 0 0
EndBehavior 1
MorphTarget 2
Metamorph 0.25
UnseenByCamera 1
AddBone
BoneName FirstFrame 7
BoneMotion (unnamed)
  9
  1
  0 5 0 90 0 0 1 1 1
  0 0 0 0 0
EndBehavior 1
ParentObject 1
ShadowOptions 2

AddNullObject Middle of the bay
ObjectMotion (unnamed)
  9
  1
  0 0 5 0 0 0 1 1 1
  0 0 0 0 0
EndBehavior 1
TargetObject 1

AmbientColor 255 128 0
AmbIntensity 0.25

AddLight
LightName Lamp on the mast
LightMotion (unnamed)
  9
  1
  0 10 -12 -20 35 0 1 1 1
  0 0 0 0 0
EndBehavior 1
ParentObject 1
LightColor (envelope)
  3
  2
  255 0 0
  0 0 0 0 0
  0 0 255
  30 1 0 0 0
EndBehavior 1
LgtIntensity (envelope)
  1
  1
  0.7
  0 0 0 0 0
EndBehavior 1
LightType 2
ConeAngle 42.450001
LightFalloff 0.1
LensFlare 1

CameraMotion (unnamed)
  9
  1
  0 0 -10 0 0 0 1 1 1
  0 0 0 0 0
EndBehavior 1
TargetObject 2
ParentObject 1
ZoomFactor 2.6
BGImage DH1:Sky
FogType 1
)";

void expect_all_of_it(const SceneFacts& scene)
{
    EXPECT_EQ(scene.version, 1);
    EXPECT_EQ(scene.first_frame, 1);
    EXPECT_EQ(scene.last_frame, 60);
    EXPECT_EQ(scene.frames_per_second, 25);
    ASSERT_EQ(scene.objects.size(), 2u);
    const restore::ObjectItem& boat = scene.objects[0];
    EXPECT_EQ(boat.stored, "Toys:Objects/Sail boat.lwo");
    EXPECT_EQ(boat.line, 9u);
    EXPECT_THAT(boat.motion.at_key(0), ElementsAre(-29.3434, 0.0600761, -2.1e-006, 30, 0, -3, 1, 2, 1));
    ASSERT_EQ(boat.motion.keys.size(), 2u);
    EXPECT_EQ(boat.motion.keys[1].frame, 42);
    EXPECT_TRUE(boat.motion.keys[1].linear);
    EXPECT_EQ(boat.motion.keys[1].continuity, -0.5f);
    EXPECT_EQ(boat.motion.end, restore::EndBehaviour::repeat);
    EXPECT_EQ(boat.parent(), 2);
    EXPECT_THAT(boat.pivot.value(), ElementsAre(0, 1, -0.5));
    EXPECT_NEAR(boat.dissolve.at(20), 0.5, 1e-12);
    EXPECT_EQ(boat.morph_target, 2);
    EXPECT_EQ(boat.morph_amount.at(7), 0.25);
    EXPECT_TRUE(boat.unseen_by_camera);
    EXPECT_TRUE(boat.displaced);
    EXPECT_EQ(boat.bones, 1u);
    EXPECT_EQ(boat.shadow_options, 2); // of the object, though a bone stands ahead of it
    const restore::ObjectItem& null = scene.objects[1];
    EXPECT_TRUE(null.is_null);
    EXPECT_EQ(null.name, "Middle of the bay");
    EXPECT_EQ(null.target.item, 1);
    EXPECT_EQ(null.parent(), 0); // the light's and the camera's aren't its own
    EXPECT_THAT(scene.ambient_colour.value, ElementsAre(255, 128, 0));
    EXPECT_EQ(scene.ambient_intensity.value, 0.25);
    ASSERT_EQ(scene.lights.size(), 1u);
    const restore::LightItem& lamp = scene.lights[0];
    EXPECT_EQ(lamp.name, "Lamp on the mast");
    EXPECT_EQ(lamp.parent(), 1);
    EXPECT_THAT(lamp.colour.at(15), ElementsAre(127.5, 0, 127.5)); // a linear key
    EXPECT_EQ(lamp.intensity.at(100), 0.7);
    EXPECT_EQ(lamp.type, 2);
    EXPECT_EQ(lamp.cone_angle.value, 42.450001);
    EXPECT_EQ(lamp.falloff.value, 0.1);
    EXPECT_TRUE(lamp.lens_flare);
    EXPECT_EQ(scene.camera.target.item, 2);
    EXPECT_EQ(scene.camera.parent(), 1);
    EXPECT_EQ(scene.camera.zoom.value, 2.6);
    EXPECT_EQ(scene.fog.type, 1);
    EXPECT_EQ(scene.oddities.count, 0u);
}

TEST(SceneFacts, HoldAllThatTheSceneSaysWhateverItsLineEnds)
{
    for (const char* const end : {"\n", "\r\n", "\r"}) {
        SCOPED_TRACE(testing::PrintToString(end));
        const std::string text = with_line_ends(std::string(scene_text), end);
        const SceneFacts scene = facts_of(text);
        expect_all_of_it(scene);
        EXPECT_EQ(text_of(scene.objects[0].name_operand, text), "Toys:Objects/Sail boat.lwo");
        EXPECT_EQ(text_of(scene.lights[0].parents[0].words, text), "ParentObject 1");
        EXPECT_TRUE(text_of(scene.lights[0].colour.operand, text).starts_with("(envelope)"));
        EXPECT_TRUE(text_of(scene.lights[0].colour.operand, text).ends_with("EndBehavior 1"));
        const std::vector<restore::Reference> named = restore::references_of(scene);
        ASSERT_EQ(named.size(), 2u);
        EXPECT_EQ(named[0].stored, "Toys:Objects/Sail boat.lwo");
        EXPECT_EQ(named[1].stored, "DH1:Sky");
        EXPECT_EQ(named[1].line, 99u);
    }
}

TEST(SceneFacts, WhatIsNoNumberIsToldWithItsLineAndLeavesTheKeywordsBehindIt)
{
    const SceneFacts scene = facts_of("LWSC\n1\nParentObject 3\nAddNullObject a\nPivotPoint 1 2\nParentObject 5\n"
                                      "ObjectMotion (unnamed)\n 9\n 3\n 1 2 3 4 5 6 7 8 9\n 0 0 0 0 0\n 1 2 nan\n"
                                      "TargetObject 4\nAddLight\nAddLight\nLightName b\nLgtIntensity 1e999\n"
                                      "LightColor (envelope)\n 2\n 1\n 1 2\n 0 0 0 0 0\nEndBehavior 7\nLightType 1");
    ASSERT_EQ(scene.objects.size(), 1u);
    EXPECT_EQ(scene.objects[0].parent(), 5);
    EXPECT_FALSE(scene.objects[0].pivot);
    EXPECT_EQ(scene.objects[0].motion.keys.size(), 1u); // the second breaks off
    EXPECT_EQ(scene.objects[0].target.item, 4);
    ASSERT_EQ(scene.lights.size(), 1u);
    EXPECT_FALSE(scene.lights[0].intensity.given);
    EXPECT_FALSE(scene.lights[0].colour.envelope);
    EXPECT_EQ(scene.lights[0].type, 1);
    std::vector<uint64_t> lines;
    for (const restore::Oddity& oddity : scene.oddities.kept) lines.push_back(oddity.place);
    EXPECT_THAT(lines, ElementsAre(3, 6, 12, 12, 15, 17, 23, 23));
    EXPECT_THAT(scene.oddities.kept[2].what, HasSubstr("\"nan\""));
}

TEST(SceneFacts, LaterScenesAreKnownByTheirVersionOrTheirMotions)
{
    EXPECT_TRUE(facts_of("LWSC\r\n3\r\n").is_later());
    EXPECT_TRUE(facts_of("LWSC 2 AddNullObject a\nObjectMotion\nNumChannels 9\nChannel 0\n").is_later());
    EXPECT_FALSE(facts_of("LWSC 2 AddNullObject a\nObjectMotion (unnamed)\n 9\n 0\n").is_later());
    EXPECT_FALSE(facts_of("LWSC 1 AddNullObject a\nObjectMotion\nNumChannels 9\nChannel 0\n").is_later());
    EXPECT_FALSE(facts_of("FORM").is_scene);
}

// Tokens straddle the blocks in which the file is read.
TEST(SceneFacts, LongMotionsAndLinesAreReadWhole)
{
    const int keys = 30'000;
    std::string text = "LWSC\n1\nAddNullObject " + std::string(200'000, 'n') + "\nObjectMotion (unnamed)\n 9\n " +
                       std::to_string(keys) + "\n";
    for (int i = 0; i < keys; ++i)
        text +=
            std::to_string(i) + ".125 0 0 0 0 0 1 1 " + std::to_string(-i) + "\n" + std::to_string(i) + " 0 0 0 0\n";
    text += "EndBehavior 1\nParentObject 1\n";
    const SceneFacts scene = facts_of(text);
    ASSERT_EQ(scene.objects.size(), 1u);
    const restore::Curve& motion = scene.objects[0].motion;
    ASSERT_EQ(motion.keys.size(), static_cast<std::size_t>(keys));
    for (int i = 0; i < keys; ++i) {
        const auto key = static_cast<std::size_t>(i);
        ASSERT_EQ(motion.keys[key].frame, i);
        ASSERT_EQ(motion.at_key(key)[restore::channel::x], i + 0.125);
        ASSERT_EQ(motion.at_key(key)[restore::channel::scale_z], -i);
    }
    EXPECT_EQ(scene.objects[0].name.size(), restore::SceneText::longest_token);
    EXPECT_EQ(text_of(scene.objects[0].name_operand, text), std::string(200'000, 'n'));
    EXPECT_EQ(text_of(scene.objects[0].parents[0].words, text), "ParentObject 1");
    EXPECT_EQ(scene.oddities.count, 0u);
    // A count that the file doesn't hold takes no memory.
    EXPECT_EQ(facts_of("LWSC 1 AddNullObject a\nObjectMotion x 9 4000000 1").objects[0].motion.keys.size(), 0u);
}

} // namespace
