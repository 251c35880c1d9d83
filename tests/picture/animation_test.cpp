// The value of a sampler, and where nodes stand, at a time.
#include <cmath>

#include "gtest/gtest.h"

#include "export/picture/animation/pose.h"
#include "export/picture/animation/time_line.h"
#include "tests/picture/table_builder.h"

using picture::Interpolation;
using picture::Keys;

namespace {

uint32_t keys(gltf::Tables& tables, gltf::Element element, const std::vector<float>& values)
{
    return tables.buffer.add(gltf::Stretch::keys, element, values, false);
}

void animate(gltf::Tables& tables, uint32_t node, gltf::AnimationChannel::Path path, const std::vector<float>& times,
             const std::vector<float>& values, bool cubic)
{
    const bool turn = path == gltf::AnimationChannel::Path::rotation;
    tables.animation.samplers.push_back({keys(tables, gltf::Element::scalar, times),
                                         keys(tables, turn ? gltf::Element::vec4 : gltf::Element::vec3, values),
                                         cubic});
    tables.animation.channels.push_back({path, static_cast<uint32_t>(tables.animation.samplers.size() - 1), node, {}});
}

std::vector<double> value(const Keys& keys, double time, bool rotation = false)
{
    std::vector<double> result(keys.width, -1);
    picture::value_at(keys, time, rotation, result);
    return result;
}

} // namespace

TEST(Sampler, LinesStepsAndCurves)
{
    const std::vector<float> times = {1, 3}, line = {10, 20};
    Keys keys{times, line, 1, Interpolation::linear};
    EXPECT_EQ(value(keys, 0)[0], 10);
    EXPECT_EQ(value(keys, 1.5)[0], 12.5);
    EXPECT_EQ(value(keys, 9)[0], 20);
    EXPECT_EQ(value(keys, NAN)[0], -1);
    keys.interpolation = Interpolation::step;
    EXPECT_EQ(value(keys, 2.999)[0], 10);
    EXPECT_EQ(value(keys, 3)[0], 20);

    // Slopes of 4 a second out of the first key and 0 into the second: in the middle (10 + 20) / 2 + 2 * 4 / 8.
    const std::vector<float> curve = {99, 10, 4, 0, 20, 99};
    keys = {times, curve, 1, Interpolation::cubic};
    EXPECT_EQ(value(keys, 1)[0], 10);
    EXPECT_NEAR(value(keys, 2)[0], 16, 1e-12);
    EXPECT_EQ(value(keys, 3)[0], 20);
}

TEST(Sampler, RotationsTakeTheShortArcAtEvenSpeed)
{
    // From 0 to 120 degrees about Z, the second key told by its negative.
    const float s = std::sqrt(0.75f);
    const std::vector<float> times = {0, 1}, values = {0, 0, 0, 1, 0, 0, -s, -0.5f};
    const Keys keys{times, values, 4, Interpolation::linear};
    const std::vector<double> third = value(keys, 1.0 / 3, true);
    EXPECT_NEAR(third[2], std::sin(20 * 3.14159265 / 180), 1e-7);
    EXPECT_NEAR(third[3], std::cos(20 * 3.14159265 / 180), 1e-7);
}

TEST(Pose, ParentsCarryTheirChildren)
{
    TableBuilder scene;
    using Path = gltf::AnimationChannel::Path;
    scene.node(gltf::none, {1, 0, 0}, turn({0, 0, 1}, 90)).children = {1};
    gltf::Node child;
    child.translation = {2, 0, 0};
    child.scale = {3, 1, 1};
    child.children = {0, 7}; // a circle, and a node that isn't there
    scene.tables.nodes.push_back(child);
    scene.tables.nodes.emplace_back(); // hangs nowhere
    animate(scene.tables, 0, Path::translation, {0, 2}, {1, 0, 0, 5, 0, 0}, false);
    const picture::Pose pose = picture::Animation(scene.tables).pose(1);
    const glm::dvec4 point = pose.worlds[1] * glm::dvec4(1, 0, 0, 1);
    EXPECT_NEAR(point.x, 3, 1e-6);
    EXPECT_NEAR(point.y, 5, 1e-6);
    EXPECT_TRUE(pose.placed[1]);
    EXPECT_FALSE(pose.placed[2]);
}

TEST(Pose, FramesStandOnTheTimeLine)
{
    gltf::Tables tables;
    tables.scene_extras["timeLine"] = {{"startFrame", 10}, {"endFrame", 40}, {"frameRate", 25}, {"frameZero", -0.4}};
    const picture::TimeLine line = picture::time_line(tables);
    EXPECT_NEAR(line.seconds(line.first_frame), 0, 1e-12);
    EXPECT_NEAR(line.seconds(40), 1.2, 1e-12);
    // Nonsense in the extras doesn't count.
    tables.scene_extras["timeLine"] = {{"frameRate", 0}, {"endFrame", "x"}};
    EXPECT_EQ(picture::time_line(tables).rate, 30);
}
