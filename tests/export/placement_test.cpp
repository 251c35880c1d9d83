#include <cmath>
#include <glm/geometric.hpp>
#include <glm/gtc/matrix_access.hpp>
#include <random>

#include "export/gltf/base/transform.h"
#include "tests/export/scene_builder.h"

namespace {

double largest_difference(const glm::dmat4& a, const glm::dmat4& b)
{
    double largest = 0;
    for (int i = 0; i < 4; ++i)
        for (int j = 0; j < 4; ++j) largest = std::max(largest, std::abs(a[i][j] - b[i][j]));
    return largest;
}

glm::dmat4 recompose(const gltf::Decomposition& parts)
{
    return gltf::compose(parts.outer) * glm::mat4_cast(parts.inner);
}

class Placement : public Export {
protected:
    // Every place of the scene against the node that stands for it, at ten times of the time line and at `times`.
    void expect_same_places(const GltfFile& file, std::vector<double> times = {}, double scale = 1, double shift = 0)
    {
        const tv::TimeLine& line = tv::scene().time_line;
        const double frame = 4800.0 / line.frame_rate;
        for (int i = 0; i < 10; ++i)
            times.push_back(frame * std::floor((line.start + (line.end - line.start) * i / 9.0) / frame));
        for (const double time : times) {
            std::vector<tv::Placement> places;
            ASSERT_TRUE(tv::place_all(tv::scene(), time, 1000000, places));
            std::vector<glm::dmat4> nodes;
            std::vector<std::string> names;
            for (const auto& root : file.json["scenes"][0]["nodes"])
                collect(file, root, glm::dmat4(1), (time + shift) / 4800, nodes, names);
            // By name and by order: an instance may stand in several places.
            std::map<std::string, std::size_t> seen;
            for (std::size_t p = 1; p < places.size(); ++p) {
                const std::string& name = tv::scene().instances[places[p].instance].name;
                std::size_t skip = seen[name]++, at = 0;
                while (at < names.size() && (names[at] != name || skip-- > 0)) ++at;
                ASSERT_LT(at, names.size()) << name;
                glm::dmat4 expected = gltf::to_glm(places[p].world);
                expected[3] = glm::dvec4(glm::dvec3(expected[3]) * scale, 1);
                for (int i = 0; i < 3; ++i)
                    for (int j = 0; j < 3; ++j)
                        EXPECT_NEAR(nodes[at][i][j], expected[i][j], 1e-4) << name << " at " << time;
                for (int j = 0; j < 3; ++j)
                    EXPECT_NEAR(nodes[at][3][j], expected[3][j], 1e-4 * scale) << name << " at " << time;
            }
        }
    }

private:
    // World matrices of what a node gives its mesh and children: the innermost of the nodes that are one instance.
    void collect(const GltfFile& file, std::size_t node, const glm::dmat4& parent, double seconds,
                 std::vector<glm::dmat4>& nodes, std::vector<std::string>& names)
    {
        const std::string name = file.json["nodes"][node].value("name", "");
        const glm::dmat4 world = parent * file.local(node, seconds);
        const bool inner = name.ends_with(" pivot") || name.ends_with(" shear");
        if (inner) {
            nodes[holder_] = world;
        } else {
            holder_ = nodes.size();
            nodes.push_back(world);
            names.push_back(name);
        }
        for (const auto& child : file.json["nodes"][node].value("children", std::vector<std::size_t>{}))
            collect(file, child, world, seconds, nodes, names);
    }
    std::size_t holder_ = 0;
};

} // namespace

TEST(Decompose, EveryMatrixComesBack)
{
    std::mt19937 random(3);
    std::uniform_real_distribution<double> number(-2, 2);
    int sheared = 0;
    for (int i = 0; i < 2000; ++i) {
        gltf::Placing placing;
        placing.rotation = gltf::euler_rotation(3 * number(random), 3 * number(random), 3 * number(random));
        for (int k = 0; k < 3; ++k) {
            placing.translation[k] = 100 * number(random);
            placing.scale[k] = i % 7 == 0 && k == i % 3 ? 0 : number(random); // mirrored and flat ones too
        }
        const glm::dmat4 straight = gltf::compose(placing);
        const gltf::Decomposition parts = gltf::decompose(straight);
        EXPECT_FALSE(parts.sheared);
        EXPECT_LT(largest_difference(recompose(parts), straight), 1e-5);

        glm::dmat4 any(1);
        for (int a = 0; a < 4; ++a)
            for (int b = 0; b < 3; ++b) any[a][b] = number(random);
        if (i % 5 == 0) any[1] = any[0] * 2.0; // rank 2
        if (i % 10 == 0) any[2] = any[0];      // rank 1
        const gltf::Decomposition two = gltf::decompose(any);
        sheared += two.sheared;
        EXPECT_LT(largest_difference(recompose(two), any), 1e-9);
        EXPECT_NEAR(glm::length(two.inner), 1, 1e-12);
        EXPECT_NEAR(glm::length(two.outer.rotation), 1, 1e-12);
    }
    EXPECT_GT(sheared, 1900);
    glm::dmat4 broken(1);
    broken[3][0] = std::nan("");
    EXPECT_FALSE(gltf::decompose(broken).finite);
    EXPECT_EQ(recompose(gltf::decompose(glm::dmat4(0))),
              glm::dmat4(glm::dvec4(0), glm::dvec4(0), glm::dvec4(0), glm::dvec4(0, 0, 0, 1)));
}

TEST_F(Placement, StaticMatricesStandWhereTheScenePutsThem)
{
    object("ball", cube_shape());
    instance("group");
    instance("moved", "ball", "group");
    instance("mirrored", "ball", "moved");
    instance("sheared", "ball", "mirrored");
    instance("below", "ball", "sheared");
    instance("broken", "ball");
    place("group", {0, 0, -2, 0, 0, 2, 0, 0, 2, 0, 0, 0, 1, 2, 3, 1});
    place("moved", {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 5, 6, 7, 1});
    place("mirrored", {-1, 0, 0, 0, 0, 0.5f, 0, 0, 0, 0, 3, 0, 0, 1, 0, 1});
    place("sheared", {1, 0.5f, 0, 0, 0, 1, 0.25f, 0, 1, 0, 1, 0, 1, 1, 1, 1});
    const GltfFile file = write();
    expect_same_places(file);
    const auto& moved = file.json["nodes"][*file.node("moved")];
    EXPECT_EQ(moved["translation"], nlohmann::json({5, 6, 7}));
    EXPECT_FALSE(moved.contains("rotation") || moved.contains("scale") || moved.contains("matrix"));
    EXPECT_TRUE(file.node("sheared shear"));

    place("broken", {1, 0, 0, 0, 0, INFINITY, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1});
    write();
    EXPECT_EQ(notes(), "1 instance placed by a matrix that isn't finite: put at the origin\n");
}

TEST_F(Placement, ScaleActsOnTheData)
{
    object("ball", cube_shape());
    instance("arm");
    instance("hand", "ball", "arm");
    place("arm", {2, 0, 0, 0, 0, 2, 0, 0, 0, 0, 2, 0, 10, 0, 0, 1});
    keys("hand", x, {{0, 1}, {4800, 3}});
    keys("hand", turn_z, {{0, 0}, {4800, 1}});
    pivot("hand", 0, 4, 0);
    time_line(0, 30);
    gltf::Options options;
    options.scale = 0.01;
    const GltfFile file = write(options);
    expect_same_places(file, {}, 0.01);
    EXPECT_NEAR(file.corners(0).positions[0].z * file.corners(0).positions[0].z, 1e-4, 1e-8);
    EXPECT_NEAR(file.json["nodes"][*file.node("arm")]["scale"][0].get<double>(), 2, 1e-9);
}

TEST_F(Placement, PivotIsANodeOfItsOwnAndCarriesTheChildren)
{
    object("door", cube_shape());
    instance("door", "door");
    instance("knob", "door", "door");
    pivot("door", -1, 0, 0.5f);
    keys("door", turn_y, {{0, 0}, {2400, 1.2f}, {4800, -0.5f}});
    keys("door", y, {{0, 3}});
    keys("door", scale_x, {{0, 2}, {4800, 1}});
    keys("knob", x, {{0, 1}, {4800, 2}});
    time_line(0, 30);
    const GltfFile file = write();
    expect_same_places(file);
    const auto& inner = file.json["nodes"][*file.node("door pivot")];
    EXPECT_EQ(inner["translation"], nlohmann::json({1, 0, -0.5}));
    EXPECT_TRUE(inner.contains("mesh"));
    EXPECT_EQ(inner["children"], nlohmann::json({*file.node("knob")}));
    EXPECT_FALSE(file.is_animated(*file.node("door"), "translation")) << "a constant path is the node's own";
    EXPECT_EQ(file.json["nodes"][*file.node("door")]["translation"], nlohmann::json({0, 3, 0}));
}

TEST_F(Placement, ChildrenOfAnObjectStandInEachOfItsInstances)
{
    object("wheel", cube_shape());
    object("car", cube_shape());
    instance("left", "wheel", "car", "object");
    instance("right", "wheel", "car", "object");
    place("left", {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, -2, 0, 0, 1});
    keys("right", turn_x, {{0, 0}, {4800, 3}}, "cycle");
    for (int i = 0; i < 3; ++i) {
        instance("car " + std::to_string(i), "car");
        keys("car " + std::to_string(i), z, {{0, static_cast<float>(i)}, {4800, static_cast<float>(5 * i)}});
    }
    time_line(0, 60);
    const GltfFile file = write();
    expect_same_places(file);
    EXPECT_EQ(file.json["meshes"].size(), 2u);
    EXPECT_EQ(file.json["nodes"].size(), 9u);
    std::size_t turning = 0;
    std::set<std::size_t> samplers;
    for (const auto& channel : file.json["animations"][0]["channels"])
        if (channel["target"]["path"] == "rotation") {
            ++turning;
            samplers.insert(channel["sampler"].get<std::size_t>());
        }
    EXPECT_EQ(turning, 3u);
    EXPECT_EQ(samplers.size(), 1u) << "one set of keys serves all places";
}

TEST_F(Placement, TooManyPlacesAreRefused)
{
    // Twenty objects, each holding two instances of the next: two million places from forty instances.
    for (int i = 0; i < 21; ++i) object("o" + std::to_string(i), triangle_shape());
    for (int i = 0; i < 20; ++i)
        for (const char* side : {" a", " b"})
            instance("i" + std::to_string(i) + side, "o" + std::to_string(i + 1), "o" + std::to_string(i), "object");
    instance("top", "o0");
    try {
        write();
        FAIL() << "was written";
    } catch (const std::runtime_error& error) {
        EXPECT_STREQ(error.what(), "the scene has more than 1000000 nodes: instances of objects that hold other "
                                   "instances multiply");
    }
}

TEST_F(Placement, AFullSceneAgreesAtEveryTime)
{
    object("part", cube_shape());
    instance("hull", "part");
    instance("arm", "part", "hull");
    instance("hand", "part", "arm");
    instance("tip", "", "hand");
    const std::vector<TestKey> swing = {
        {0, 0}, {1600, 1.5f, 0.3f, -0.4f, 0.2f}, {3200, -2, -0.5f, 0.7f, -0.6f}, {4800, 0.5f}};
    keys("hull", x, swing);
    keys("hull", turn_y, swing);
    keys("hull", turn_x, {{0, 0}, {4800, 0.7f}});
    keys("arm", turn_z, swing, "cycle");
    keys("arm", scale_y, {{0, 1}, {3200, 2}}, "reset");
    keys("arm", y, {{0, 2}, {3200, 3}}, "reset");
    keys("hand", turn_x, {{1600, 0.4f}, {2400, -0.4f}}, "cycle");
    keys("hand", z, {{160, 1}, {2400, 4}, {2560, -1}}, "cycle");
    pivot("hand", 0.5f, 1, 2);
    place("tip", {1, 0, 0, 0, 0, 0, 1, 0, 0, -1, 0, 0, 3, 2, 1, 1});
    time_line(0, 90);
    std::vector<double> frames;
    for (int frame = 0; frame <= 90; ++frame) frames.push_back(frame * 160);
    expect_same_places(write(), frames);
}

TEST_F(Placement, KeysBeforeZeroMoveTheWholeTimeLine)
{
    object("part", cube_shape());
    instance("part", "part");
    keys("part", x, {{-4800, 0}, {0, 2}, {4800, -3}});
    keys("part", turn_x, {{-1600, 0}, {4800, 2}});
    time_line(-15, 30);
    const GltfFile file = write();
    EXPECT_EQ(file.key_times(*file.node("part"), "translation"), (std::vector<double>{0, 1, 2}));
    expect_same_places(file, {}, 1, 4800);
    const auto& line = file.json["animations"][0]["extras"]["timeLine"];
    EXPECT_EQ(line["frameZero"], 1);
    EXPECT_EQ(line["start"], 0.5);
    EXPECT_EQ(line["end"], 2);
    EXPECT_EQ(line["startFrame"], -15);
}

TEST_F(Placement, AStillStandsAtItsFrameAndDoesntMove)
{
    object("part", cube_shape());
    instance("part", "part");
    instance("child", "part", "part");
    keys("part", x, {{0, 0}, {4800, 5, 0.5f}, {9600, -3}});
    keys("part", turn_y, {{0, 0}, {9600, 4}});
    keys("child", scale_z, {{0, 1}, {4800, 3}}, "cycle");
    pivot("part", 1, 2, 3);
    time_line(0, 60);
    gltf::Options options;
    options.frame = 43.5;
    const GltfFile file = write(options);
    EXPECT_FALSE(file.json.contains("animations"));
    std::vector<tv::Placement> places;
    ASSERT_TRUE(tv::place_all(tv::scene(), 43.5 * 160, 100, places));
    for (std::size_t i = 1; i < places.size(); ++i) {
        const std::string name = tv::scene().instances[places[i].instance].name == "part" ? "part pivot" : "child";
        EXPECT_LT(largest_difference(file.world(*file.node(name), 0), gltf::to_glm(places[i].world)), 1e-5) << name;
    }
}
