#include <algorithm>
#include <cmath>
#include <glm/geometric.hpp>
#include <random>

#include "export/gltf/animation/animation.h"
#include "lib/toolkit/animation/animation.h"
#include "tests/export/scene_builder.h"

namespace {

class Animation : public Export {
protected:
    void SetUp() override
    {
        Export::SetUp();
        object("part", triangle_shape());
        instance("part", "part");
    }
    const tv::InstanceChannels& channels() const
    {
        return *tv::scene().instances[tv::scene().find(tv::Kind::instance, "part")].channels;
    }
    // The file's translation against the toolkit's spline, at `count` times of a range in 1/4800 s.
    void expect_same_path(const GltfFile& file, double from, double to, int count)
    {
        const std::size_t node = *file.node("part");
        for (int i = 0; i < count; ++i) {
            const double time = from + (to - from) * i / (count - 1);
            const std::vector<double> value = file.animated(node, "translation", time / 4800);
            ASSERT_EQ(value.size(), 3u);
            for (std::size_t k = 0; k < 3; ++k)
                EXPECT_NEAR(value[k], tv::evaluate(channels().position[k], time, 0), 2e-5) << k << " at " << time;
        }
    }
};

} // namespace

TEST_F(Animation, SplinesAreTheFilesOwn)
{
    std::mt19937 random(11);
    std::uniform_real_distribution<float> bend(-1, 1);
    for (const std::size_t slot : {x, y, z}) {
        std::vector<TestKey> list;
        for (int i = 0; i < 20; ++i)
            list.push_back({i * i * 40, 5 * bend(random), bend(random), bend(random), bend(random)});
        keys("part", slot, list);
    }
    time_line(0, 60);
    const GltfFile file = write();
    const std::vector<double> times = file.key_times(*file.node("part"), "translation");
    ASSERT_EQ(times.size(), 20u) << "the file's own keys, no others";
    for (std::size_t i = 0; i < 20; ++i) EXPECT_NEAR(times[i], static_cast<double>(i * i) * 40 / 4800, 1e-6);
    EXPECT_EQ(file.json["animations"][0]["samplers"][0]["interpolation"], "CUBICSPLINE");
    expect_same_path(file, -500, 15000, 1000);
}

TEST_F(Animation, KeysOfOneComponentAreCutIntoTheOthersPieces)
{
    keys("part", x, {{0, 0}, {4800, 10, 0.5f, 0.2f, -0.7f}, {9600, -4}});
    keys("part", y, {{1000, 3}, {2000, -5, -1}, {7777, 8}});
    keys("part", z, {{0, 7}});
    time_line(0, 60);
    const GltfFile file = write();
    EXPECT_EQ(file.key_times(*file.node("part"), "translation").size(), 6u);
    expect_same_path(file, 0, 9600, 700);
}

TEST_F(Animation, WhatStandsBeyondTheKeysFillsTheTimeLine)
{
    // Off the seams: between a key and the step behind it lies a tenth of a time unit where the file can't be exact.
    keys("part", x, {{1600, 0}, {2400, 4}, {3200, 1}}, "cycle");
    keys("part", y, {{1600, 2}, {3200, 5}}, "reset");
    keys("part", z, {{1600, 2}, {3200, 5}}, "constant");
    time_line(0, 60);
    const GltfFile file = write();
    const std::size_t node = *file.node("part");
    for (int time = 0; time <= 9600; time += 20) // whole units, seams among them
        for (std::size_t k = 0; k < 3; ++k)
            EXPECT_NEAR(file.animated(node, "translation", time / 4800.0)[k],
                        tv::evaluate(channels().position[k], time, 0), 1e-2)
                << k << " at " << time;
    // Between the seams the splines are exact.
    expect_same_path(file, 1605, 3195, 300);
    expect_same_path(file, 3205, 4795, 300);
    expect_same_path(file, 8005, 9595, 300);
    const std::vector<double> times = file.key_times(node, "translation");
    EXPECT_TRUE(std::is_sorted(times.begin(), times.end(), std::less_equal<>())) << "strictly rising";
    EXPECT_LE(times.size(), 40u);
}

TEST_F(Animation, EndlessCyclesStopAndAreTold)
{
    keys("part", x, {{0, 0}, {1, 1}}, "cycle");
    int32_t end = 2000000000;
    Tv_Animation(w("endtime"), &end, 0);
    const GltfFile file = write();
    EXPECT_LE(file.key_times(*file.node("part"), "translation").size(), 300010u);
    EXPECT_NE(notes().find("1 channel with too many repetitions"), std::string::npos) << notes();
}

TEST_F(Animation, NumbersBeyondAllBoundsStayOutOfTheFile)
{
    keys("part", x, {{0, 1}, {1600, NAN}, {3200, 3}, {4800, 2, INFINITY}, {6400, 3e38f}, {8000, -3e38f}});
    keys("part", turn_y, {{0, -1e30f}, {4800, 1e30f}});
    keys("part", scale_x, {{0, 0}, {4800, -2}});
    time_line(0, 60);
    const GltfFile file = write(); // the validator has the last word on it
    EXPECT_EQ(notes(), "2 keys left out: not a number\n");
    for (const char* path : {"translation", "rotation", "scale"})
        EXPECT_TRUE(file.is_animated(*file.node("part"), path));
}

TEST_F(Animation, ConstantPathsAreLeftOut)
{
    keys("part", x, {{0, 4}, {2400, 4, 0.3f}, {4800, 4}});
    keys("part", scale_z, {{0, 0.5f}, {4800, 0.5f}});
    keys("part", turn_x, {{0, 1}, {4800, 1}});
    time_line(0, 30);
    const GltfFile file = write();
    EXPECT_FALSE(file.json.contains("animations"));
    const auto& node = file.json["nodes"][*file.node("part")];
    EXPECT_EQ(node["translation"][0], 4);
    EXPECT_EQ(node["scale"][2], 0.5);
    EXPECT_NEAR(node["rotation"][0].get<double>(), std::sin(0.5), 1e-6);
}

TEST_F(Animation, RotationsHoldAtEveryFrame)
{
    keys("part", turn_x, {{0, 0}, {1777, 2}, {4800, -1, 0.5f}, {9600, 0}});
    keys("part", turn_y, {{0, 0}, {9600, 20}});
    keys("part", turn_z, {{100, 0.5f}, {3333, -3}, {9600, 1}}, "reset");
    time_line(0, 90, 25);
    const GltfFile file = write();
    const std::size_t node = *file.node("part");
    for (double time = 0; time <= 90 * 192; time += 192) {
        const glm::dquat expected = gltf::euler_rotation(tv::evaluate(channels().rotation[0], time, 0),
                                                         tv::evaluate(channels().rotation[1], time, 0),
                                                         tv::evaluate(channels().rotation[2], time, 0));
        const std::vector<double> q = file.animated(node, "rotation", time / 4800);
        EXPECT_LT(gltf::angle_between(expected, glm::normalize(glm::dquat(q[3], q[0], q[1], q[2]))), 0.02 * M_PI / 180)
            << time;
    }
}

TEST_F(Animation, AnEvenTurnNeedsFewKeys)
{
    // A quarter turn a second for twelve seconds: no arc may reach half a turn.
    keys("part", turn_y, {{0, 0}, {57600, static_cast<float>(6 * M_PI)}});
    time_line(0, 360);
    const GltfFile file = write();
    const std::size_t count = file.key_times(*file.node("part"), "rotation").size();
    EXPECT_GE(count, 7u);
    EXPECT_LE(count, 10u);
}

TEST(NeededRotations, KeepEveryOtherWithinTheToleranceOfTheirArc)
{
    std::mt19937 random(5);
    std::uniform_real_distribution<double> step(-0.02, 0.02);
    constexpr double tolerance = 0.01;
    std::vector<float> times;
    std::vector<glm::dquat> rotations;
    glm::dquat q(1, 0, 0, 0);
    for (int i = 0; i < 20000; ++i) {
        times.push_back(static_cast<float>(i) / 30);
        rotations.push_back(i % 2 == 0 ? q : -q);
        const double bend = i % 1000 < 500 ? 1 : 0.02; // wild and calm stretches
        q = glm::normalize(q *
                           gltf::euler_rotation(bend * step(random) + 0.02, bend * step(random), bend * step(random)));
    }
    const std::vector<std::size_t> kept = gltf::needed_rotations(times, rotations, tolerance);
    EXPECT_EQ(kept.front(), 0u);
    EXPECT_EQ(kept.back(), times.size() - 1);
    EXPECT_LT(kept.size(), times.size() * 2 / 3);
    for (std::size_t i = 0; i + 1 < kept.size(); ++i) {
        glm::dquat to = rotations[kept[i + 1]];
        if (glm::dot(rotations[kept[i]], to) < 0) to = -to;
        for (std::size_t k = kept[i]; k <= kept[i + 1]; ++k) {
            const double s = static_cast<double>(times[k] - times[kept[i]]) / (times[kept[i + 1]] - times[kept[i]]);
            EXPECT_LT(gltf::angle_between(glm::slerp(rotations[kept[i]], to, s), rotations[k]), tolerance + 1e-6);
        }
    }
}
