// From the text of a scene to what the file says, with numbers worked out by hand. Places and directions in scenes are
// the old program's (left-handed, heading turns +Z to +X); in files Z points the other way.
#include "restore/after/put_back.h"

#include <cmath>
#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "export/gltf/writer.h"
#include "restore/facts/scene_reader.h"
#include "tests/export/gltf_reader.h"
#include "tests/restore/file_of.h"
#include "tests/support/run_plugin.h"
#include "tools/lwob_writer.h"

namespace {

using restore::Restoration;

struct Key {
    double frame, x = 0, y = 0, z = 0, heading = 0;
    bool linear = false;
};

std::string motion(const char* keyword, const std::vector<Key>& keys, int end = 1)
{
    std::string text = std::string(keyword) + " (unnamed)\n  9\n  " + std::to_string(keys.size()) + "\n";
    for (const Key& key : keys)
        text += "  " + std::to_string(key.x) + " " + std::to_string(key.y) + " " + std::to_string(key.z) + " " +
                std::to_string(key.heading) + " 0 0 1 1 1\n  " + std::to_string(static_cast<int>(key.frame)) +
                (key.linear ? " 1 0 0 0\n" : " 0 0 0 0\n");
    return text + "EndBehavior " + std::to_string(end) + "\n";
}

std::string envelope(const char* keyword, const std::vector<std::pair<int, double>>& keys)
{
    std::string text = std::string(keyword) + " (envelope)\n  1\n  " + std::to_string(keys.size()) + "\n";
    for (const auto& [frame, value] : keys)
        text += "  " + std::to_string(value) + "\n  " + std::to_string(frame) + " 1 0 0 0\n";
    return text + "EndBehavior 1\n";
}

std::string null_object(const char* name, const std::vector<Key>& keys, const std::string& more = "")
{
    return std::string("AddNullObject ") + name + "\n" + motion("ObjectMotion", keys) + more;
}

std::string light(const char* name, const std::string& more, const std::vector<Key>& keys = {{0, 0, 5, 2}})
{
    return std::string("AddLight\nLightName ") + name + "\n" + motion("LightMotion", keys) +
           "LightColor 255 255 255\n" + more + "LightType 1\n";
}

// A triangle whose third point stands at the height given.
std::string triangle(float height)
{
    lw_tools::ObjectWriter object;
    object.surface_names = {"hull"};
    const unsigned a = object.point(0, 0, 0), b = object.point(0, height, 0), c = object.point(1, 0, 0);
    object.polygon({a, b, c});
    return object.to_bytes();
}

class PutBack : public testing::Test {
protected:
    void write(const std::string& name, std::string_view bytes) { directory_.write(name, bytes); }

    GltfFile convert(const std::string& body, restore::PutBackSettings settings = {}, int first = 0, int last = 60)
    {
        const std::string text = "LWSC\n1\n\nFirstFrame " + std::to_string(first) + "\nLastFrame " +
                                 std::to_string(last) + "\nFrameStep 1\nFramesPerSecond 30\n\n" + body;
        write("test.lws", text);
        EXPECT_EQ(plugin_test::convert("test.lws", {{"print_statistics", 0}}).result, 0);
        const restore::SceneFacts facts = restore::read_scene(restore_test::FileOf(text));
        for (const restore::ObjectItem& item : facts.objects) settings.files.push_back(item.is_null ? "" : item.stored);
        done = restore::put_back(tv::scene_to_restore(), facts, settings);
        gltf::Options options;
        options.fine_rotations = true;
        gltf::write_file(gltf::make_tables(tv::scene(), options).tables, "test.glb");
        return GltfFile::read("test.glb");
    }

    static glm::dvec3 place(const GltfFile& file, const char* name, double seconds)
    {
        const auto node = file.node(name);
        EXPECT_TRUE(node) << name;
        return node ? glm::dvec3(file.world(*node, seconds)[3]) : glm::dvec3(NAN);
    }
    // Where the node's -Z points.
    static glm::dvec3 ahead(const GltfFile& file, const char* name, double seconds)
    {
        const auto node = file.node(name);
        return node ? -glm::dvec3(file.world(*node, seconds)[2]) : glm::dvec3(NAN);
    }
    static void expect_near(const glm::dvec3& a, const glm::dvec3& b, double tolerance = 1e-4)
    {
        EXPECT_LT(glm::distance(a, b), tolerance) << a.x << ' ' << a.y << ' ' << a.z;
    }

    static restore::PutBackSettings without(Restoration restoration)
    {
        restore::PutBackSettings settings;
        settings.wanted.turn_off(restoration);
        return settings;
    }

    restore::PutBack done;

private:
    plugin_test::TemporaryDirectory directory_;
};

TEST_F(PutBack, LightsHangOnTheirParentsAndMove)
{
    // A mast that travels 30 units a second, turned to +X: what stands 2 ahead of it stands 2 to its right.
    const std::string scene = null_object("Mast", {{0, 0, 0, 0, 90}, {60, 60, 0, 0, 90}}) +
                              light("Lamp on top", "LgtIntensity 1\nParentObject 1\n") +
                              light("Walker", "LgtIntensity 1\n", {{0, 0, 0, 0}, {60, 0, 0, 12}});
    const GltfFile file = convert(scene);
    expect_near(place(file, "Lamp on top", 0.5), {17, 5, 0});
    expect_near(place(file, "Lamp on top", 2), {62, 5, 0});
    expect_near(place(file, "Walker", 1), {0, 0, -6});
    EXPECT_EQ(done.acted[Restoration::light_parents], 1u);
    EXPECT_EQ(done.acted[Restoration::light_motions], 1u);
    expect_near(place(convert(scene, without(Restoration::light_parents)), "Lamp on top", 0.5), {0, 5, -2});
}

TEST_F(PutBack, TargetsAreLookedAtAtAllTimes)
{
    const std::string goal = null_object("Goal", {{0, 10, 0, 0}, {60, 0, 0, 10}});
    const std::string looker = null_object("Head", {{0, 0, 1, 0}}, "TargetObject 1\n");
    const std::string camera = "ShowCamera 1\n" + motion("CameraMotion", {{0, 0, 0, -10}, {60, 0, 0, -10}}) +
                               "TargetObject 1\nZoomFactor 3.2\n";
    const GltfFile file = convert(goal + looker + camera);
    for (const double seconds : {0.0, 0.77, 1.31, 2.0}) {
        const glm::dvec3 at = place(file, "Goal", seconds);
        for (const char* name : {"Head", "lightwave"}) {
            const glm::dvec3 wanted = glm::normalize(at - place(file, name, seconds));
            expect_near(ahead(file, name, seconds), wanted, 0.0009); // 0.05 degrees
        }
    }
    expect_near(ahead(file, "lightwave", 0), glm::normalize(glm::dvec3(1, 0, -1)));
    EXPECT_EQ(done.acted[Restoration::targets], 2u);
}

TEST_F(PutBack, TargetsThatMakeNoSenseAreLeftOutAndTold)
{
    const Key still{0, 1, 2, 3};
    convert(null_object("Own", {still}, "TargetObject 1\n") + null_object("None", {still}, "TargetObject 77\n") +
            null_object("Mother", {still}, "TargetObject 5\n") + null_object("Child", {still}, "ParentObject 3\n") +
            null_object("Grandchild", {still}, "ParentObject 4\n"));
    EXPECT_EQ(done.circular_targets, 2u) << "itself, and what hangs below it";
    EXPECT_EQ(done.bad_targets, 1u);
}

TEST_F(PutBack, StraightKeysHoldStill)
{
    const std::string scene = null_object("Ship", {{0}, {30, 0, 0, 0, 0, true}, {60, 10}});
    EXPECT_NEAR(place(convert(scene), "Ship", 0.5).x, 0, 1e-6);
    // Behind it the spline goes on as ever, with the tangent (0 + 10) / 2 of its first key.
    EXPECT_NEAR(place(convert(scene), "Ship", 1.5).x, 5 + (5 - 10) / 8.0, 1e-4);
    EXPECT_LT(place(convert(scene, without(Restoration::linear_keys)), "Ship", 0.5).x, -0.5) << "the spline's own way";
}

TEST_F(PutBack, TheClipLastsFromTheFirstFrameToTheLast)
{
    const std::string scene = "AddNullObject Wheel\n" + motion("ObjectMotion", {{0}, {7, 7}}, 2);
    const GltfFile file = convert(scene, {}, 1, 31);
    const std::vector<double> times = file.key_times(*file.node("Wheel"), "translation");
    EXPECT_EQ(times.front(), 0);
    EXPECT_NEAR(times.back(), 1, 1e-6);
    EXPECT_NEAR(place(file, "Wheel", 0).x, 1, 1e-4) << "frame 1";
    EXPECT_NEAR(place(file, "Wheel", 9 / 30.0).x, 3, 1e-4) << "frame 10 is frame 3 of the second turn";
    EXPECT_NEAR(file.json["scenes"][0]["extras"]["timeLine"]["frameZero"].get<double>(), -1 / 30.0, 1e-9);
    // Saved while a single picture was made: the keys tell how long it is.
    const GltfFile all = convert(null_object("Ship", {{0}, {150, 5}}), {}, 1, 1);
    EXPECT_NEAR(all.key_times(*all.node("Ship"), "translation").back(), 5, 1e-6);
}

TEST_F(PutBack, LightsThatStartDarkShineAndFlaresDont)
{
    const GltfFile file = convert(light("Dawn", envelope("LgtIntensity", {{0, 0}, {30, 2}})) +
                                  light("Flare", "LgtIntensity 0\nLensFlare 1\nFlareIntensity 1\n"));
    const auto& lights = file.json["extensions"]["KHR_lights_punctual"]["lights"];
    ASSERT_EQ(lights.size(), 1u);
    EXPECT_GT(lights[0]["intensity"].get<double>(), 0);
    const auto& channels = file.json["animations"][0]["channels"];
    EXPECT_EQ(channels[0]["target"]["extensions"]["KHR_animation_pointer"]["pointer"],
              "/extensions/KHR_lights_punctual/lights/0/intensity");
    EXPECT_EQ(done.acted[Restoration::dark_lights], 1u);
    EXPECT_EQ(done.losses.lens_flares, 1u);
}

TEST_F(PutBack, ObjectsDissolveHideAndMorph)
{
    write("flat.lwo", triangle(1));
    write("tall.lwo", triangle(3));
    const std::string at_rest = motion("ObjectMotion", {{0}});
    const GltfFile file = convert(
        "LoadObject flat.lwo\n" + at_rest + "MorphTarget 2\n" + envelope("MorphAmount", {{0, 0}, {60, 1}}) +
        "LoadObject tall.lwo\n" + at_rest + "ObjDissolve 1\n" + "LoadObject tall.lwo\n" + at_rest +
        "UnseenByCamera 1\n" + "LoadObject tall.lwo\n" + at_rest + envelope("ObjDissolve", {{0, 1}, {15, 1}, {30, 0}}));
    const auto& nodes = file.json["nodes"];
    const auto& flat = nodes[*file.node("flat")];
    const auto& target = file.json["meshes"][flat["mesh"].get<std::size_t>()]["primitives"][0]["targets"][0];
    const std::vector<double> moved = file.numbers(target["POSITION"].get<std::size_t>());
    EXPECT_THAT(moved, testing::Contains(2.0)) << "the third point rises from 1 to 3";
    EXPECT_EQ(file.animated(*file.node("flat"), "weights", 1), std::vector<double>{0.5});
    EXPECT_FALSE(nodes[*file.node("tall")].contains("mesh")) << "dissolved for good";
    EXPECT_FALSE(nodes[*file.node("tall #2")].contains("mesh")) << "not for the camera";
    const auto own = file.node("tall #3 mesh");
    ASSERT_TRUE(own);
    EXPECT_EQ(file.animated(*own, "scale", 0.2), (std::vector<double>{0, 0, 0})) << "not there yet";
    EXPECT_EQ(file.animated(*own, "scale", 0.75), (std::vector<double>{1, 1, 1})) << "half dissolved";
    EXPECT_EQ(done.acted[Restoration::dissolves], 2u);
    EXPECT_EQ(done.unfit_morphs, 0u);
}

TEST_F(PutBack, AmbientLightIsWhatSurfacesSend)
{
    write("flat.lwo", triangle(1));
    const GltfFile file = convert("LoadObject flat.lwo\n" + motion("ObjectMotion", {{0}}) +
                                  "AmbientColor 255 255 255\nAmbIntensity 0.25\n");
    const auto& material = file.json["materials"][0];
    const auto color = material["pbrMetallicRoughness"].value("baseColorFactor", std::vector<double>{1, 1, 1, 1});
    for (std::size_t i = 0; i < 3; ++i) EXPECT_NEAR(material["emissiveFactor"][i].get<double>(), 0.25 * color[i], 1e-5);
}

TEST_F(PutBack, FactsOfAnotherSceneTouchNothing)
{
    convert(null_object("Ship", {{0}}) + null_object("Boat", {{0}}));
    const restore::SceneFacts other = restore::read_scene(
        restore_test::FileOf("LWSC\n1\nAddNullObject Boat\nAddNullObject Ship\nUnseenByCamera 1\n"));
    const restore::PutBack result = restore::put_back(tv::scene_to_restore(), other, {});
    EXPECT_TRUE(result.objects_unmatched);
    EXPECT_EQ(result.acted[Restoration::unseen], 0u);
}

} // namespace
