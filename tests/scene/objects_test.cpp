// Objects of a scene: where their files are looked for, reuse, null instances, pivots and parents.
#include <filesystem>

#include "lib/toolkit/animation/animation.h"
#include "lib/toolkit/calls/environment.h"
#include "tests/scene/scene_fixture.h"

using namespace scene_tests;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

class Objects : public SceneTest {
protected:
    // Where the file lies, for a scene that asks for `stored`: true when it was found.
    bool finds(const std::string& stored, const std::string& place)
    {
        file(place, triangle());
        const Conversion run =
            convert(head + "LoadObject " + stored + "\n", {{"newtek_root_directory", content_directory}});
        std::filesystem::remove_all(*std::filesystem::path(place).begin());
        EXPECT_EQ(run.result, 0);
        const bool missing = !run.messages.empty();
        EXPECT_EQ(tv::scene().objects.size(), missing ? 1u : 2u) << stored; // the root, and what was found
        return !missing;
    }

    const tv::Instance& instance(std::string_view name)
    {
        const tv::Id id = tv::scene().find(tv::Kind::instance, name);
        EXPECT_NE(id, tv::no_id) << name;
        return tv::scene().instances[id == tv::no_id ? 0 : id];
    }

    std::string parent_of(std::string_view name)
    {
        const tv::Instance& child = instance(name);
        if (child.parent_kind == tv::Kind::object) return "object " + tv::scene().objects[child.parent].name;
        return child.parent_kind == tv::Kind::instance ? tv::scene().instances[child.parent].name : "nothing";
    }

    std::string content_directory = "c:\\";
};

TEST_F(Objects, AStoredPathIsLookedForByItsLastElementsFirst)
{
    EXPECT_TRUE(finds("ship.lwo", "ship.lwo"));
    EXPECT_TRUE(finds("Work:Objects/Space/SHIP.LWO", "ship.lwo"));
    EXPECT_TRUE(finds("C:\\NEWTEK\\OBJECTS\\SHIP.LWO", "ship.lwo"));
    EXPECT_TRUE(finds("Work:Objects/Space/Ship.lwo", "space/ship.lwo"));
    EXPECT_TRUE(finds("OBJECTS\\Space\\Ship", "Space/SHIP")); // any case, as on the machine that wrote it
    EXPECT_TRUE(finds("My Objects/Space Ship.lwo", "space ship.lwo"));
    EXPECT_FALSE(finds("a/b/ship.lwo", "b/other.lwo"));
    // Two separators: the last element, and the last two, but never all three.
    EXPECT_FALSE(finds("a/b/ship.lwo", "x/a/b/ship.lwo"));
}

TEST_F(Objects, ThenBelowTheContentDirectory)
{
    content_directory = std::filesystem::current_path() / "content";
    EXPECT_TRUE(finds("Space/Big/Ship.lwo", "content/Space/Big/Ship.lwo"));
    EXPECT_TRUE(finds("Space/Big/Ship.lwo", "content/Ship.lwo")); // by its base name
    EXPECT_FALSE(finds("/Space/Big/Ship.lwo", "content/Space/Big/Ship.lwo"));
    content_directory += "/";
    EXPECT_TRUE(finds("Space/Big/Ship.lwo", "content/Space/Big/Ship.lwo"));
    content_directory = std::string(400, 'x'); // no path of 300 characters is put together from this
    EXPECT_FALSE(finds("Space/Big/Ship.lwo", "other/Ship.lwo"));
}

TEST_F(Objects, ThenFromTheRootAndAlongTheSearchPath)
{
    const std::string here = std::filesystem::current_path().string();
    EXPECT_TRUE(finds(here.substr(1) + "/deep/down/ship.lwo", "deep/down/ship.lwo"));
    EXPECT_TRUE(finds("Z:" + here + "/deep/down/ship.lwo", "deep/down/ship.lwo"));
    EXPECT_TRUE(finds("Z:" + here.substr(1) + "/deep/down/ship.lwo", "deep/down/ship.lwo"));
    tv::set_search_path({here + "/far"});
    EXPECT_TRUE(finds("/gone/Ship.lwo", "far/ship.lwo"));
    EXPECT_TRUE(finds("Toys:Ship.lwo", "far/ship.lwo"));
    tv::set_search_path({});
}

TEST_F(Objects, OneFileIsOneObjectHoweverItIsNamed)
{
    file("ship.lwo", triangle());
    const Conversion run = convert(head + "LoadObject ship.lwo\nLoadObject A:x/SHIP.LWO\nLoadObject gone/Ship.lwo\n");
    EXPECT_THAT(run.messages, IsEmpty());
    EXPECT_EQ(run.calls_of("Tv_Primitive").size(), 1u);
    EXPECT_EQ(tv::scene().objects.size(), 2u);
    EXPECT_EQ(instance("ship #2").object, instance("ship").object);
    EXPECT_EQ(instance("ship #3").object, instance("ship").object);
    EXPECT_THAT(run.calls_of("Tv_Inquire_TxtrParam"),
                ElementsAre(HasSubstr("\"'ship'\""), HasSubstr("\"'ship'\""))); // the first row's frame, both times
}

TEST_F(Objects, AMissingFileBecomesANullInstanceEachTime)
{
    const Conversion run = convert(head + "LoadObject Work:Gone.LWO\n" + placed_at("ObjectMotion", 1, 2, 3) +
                                   "LoadObject gone.lwo\nParentObject 1\n");
    const auto text = [](int line) {
        return "4 Could not locate Lightwave object file 'gone.lwo' referenced at line number " + std::to_string(line) +
               " of scene file 'test.lws'. Adding null object instead.\n";
    };
    EXPECT_THAT(run.messages, ElementsAre(text(2), text(9)));
    EXPECT_EQ(run.result, 0);
    EXPECT_EQ(parent_of("gone.lwo #2"), "gone.lwo");
    EXPECT_EQ(instance("gone.lwo").object, tv::no_id);
    EXPECT_TRUE(tv::is_animated(instance("gone.lwo")));
}

TEST_F(Objects, AMissingFileOfALongNameIsToldInAMessageOf255Characters)
{
    const Conversion run = convert(head + "LoadObject " + std::string(300, 'x') + "\n");
    ASSERT_EQ(run.messages.size(), 1u);
    EXPECT_EQ(run.messages[0].size(), 2 + 255u);
    EXPECT_NE(tv::scene().find(tv::Kind::instance, std::string(255, 'x')), tv::no_id);
}

TEST_F(Objects, AFileThatCannotBeReadLeavesNoRow)
{
    file("good.lwo", triangle());
    file("bad.lwo", "FORM....ILBM");
    // The second row is the null: the bad object has none, so the number 2 means the null.
    const Conversion run =
        convert(head + "LoadObject good.lwo\nLoadObject bad.lwo\n" + placed_at("ObjectMotion", 5, 0, 0) +
                "AddNullObject handle\nAddNullObject knob\nParentObject 2\n");
    EXPECT_EQ(run.result, 0);
    EXPECT_EQ(run.messages.size(), 1u);
    EXPECT_EQ(parent_of("knob"), "handle");
    // What stands behind the bad file goes to the object before it.
    EXPECT_TRUE(tv::is_animated(instance("good")));
}

TEST_F(Objects, AnObjectWithNothingToBuildLeavesANullInstanceInItsRow)
{
    lw_tools::ObjectWriter points;
    points.point(1, 2, 3);
    file("good.lwo", triangle());
    file("dust.lwo", points.to_bytes());
    const Conversion run =
        convert(head + "LoadObject good.lwo\nPivotPoint 1 2 3\nLoadObject dust.lwo\nAddNullObject knob\n"
                       "ParentObject 2\n");
    EXPECT_EQ(run.result, 0);
    EXPECT_THAT(run.messages, ElementsAre(HasSubstr("does not have any")));
    EXPECT_EQ(parent_of("knob"), "dust.lwo");
    EXPECT_EQ(instance("good").axes.origin_enabled, 1); // the object before keeps its pivot
}

TEST_F(Objects, PivotAndParentAddressTheCurrentObject)
{
    const Conversion run =
        convert(head + "PivotPoint 7 8 9\nParentObject 1\nAddNullObject one two  \nPivotPoint 1 2 3\n"
                       "AddNullObject three\nAddBone\nPivotPoint 4 5 6\nParentObject 1\n");
    EXPECT_EQ(run.result, 0);
    const Tv_Local_Axes& axes = instance("one two  ").axes;
    EXPECT_EQ(axes.origin_enabled, 1);
    EXPECT_THAT(std::vector<float>(axes.axes_matrix[3], axes.axes_matrix[3] + 3), ElementsAre(1, 2, -3));
    EXPECT_EQ(instance("three").axes.origin_enabled, 0);
    EXPECT_THAT(parent_of("three"), HasSubstr("object "));
}

TEST_F(Objects, ParentNumbersThatNoRowHasLeadToTheWorld)
{
    const Conversion run = convert(head + "AddNullObject a\nParentObject 3\nAddNullObject b\nParentObject 2\n"
                                          "AddNullObject c\nParentObject -1\nAddNullObject d\nParentObject 0\n"
                                          "AddNullObject e\nParentObject 6\nAddNullObject f\nParentObject -32768\n"
                                          "AddNullObject g\nParentObject 65537\n");
    const auto text = [](int number) {
        return "4 A 'parent' number (" + std::to_string(number) +
               ") was found which exceeds the number of imported files (7).\n";
    };
    EXPECT_EQ(run.result, 0);
    EXPECT_THAT(run.messages, testing::Contains(text(-1)));
    EXPECT_THAT(run.messages, testing::Contains(text(32768)));
    EXPECT_EQ(parent_of("a"), "c");
    EXPECT_EQ(parent_of("b"), "world"); // its own child: the toolkit says so
    EXPECT_EQ(parent_of("c"), "world");
    EXPECT_THAT(parent_of("d"), HasSubstr("object "));
    EXPECT_EQ(parent_of("e"), "f");
    EXPECT_EQ(parent_of("f"), "world");
    EXPECT_EQ(parent_of("g"), "a"); // 1 in 16 bits
}

TEST_F(Objects, CyclesLoseNothing)
{
    file("ship.lwo", triangle());
    const Conversion run = convert(head + "LoadObject ship.lwo\nParentObject 2\nLoadObject ship.lwo\nParentObject 3\n"
                                          "LoadObject ship.lwo\nParentObject 1\n");
    EXPECT_EQ(run.result, 0);
    std::vector<tv::Placement> places;
    ASSERT_TRUE(tv::place_all(tv::scene(), 0, 1000, places));
    for (const char* name : {"ship", "ship #2", "ship #3"}) {
        const tv::Id id = tv::scene().find(tv::Kind::instance, name);
        const auto here = [id](const tv::Placement& place) { return place.instance == id; };
        EXPECT_EQ(std::count_if(places.begin(), places.end(), here), 1) << name;
    }
}

TEST_F(Objects, AParentThatHoldsGeometryIsWrappedOnce)
{
    file("ship.lwo", triangle());
    convert(head + "LoadObject ship.lwo\n" + placed_at("ObjectMotion", 1, 2, 3) +
            "AddNullObject a\nParentObject 1\nAddNullObject b\nParentObject 1\n");
    EXPECT_EQ(parent_of("ship"), "ship #2");
    EXPECT_EQ(parent_of("a"), "ship #2");
    EXPECT_EQ(parent_of("b"), "ship #2");
    EXPECT_TRUE(tv::is_animated(instance("ship #2")));
    EXPECT_FALSE(tv::is_animated(instance("ship")));
}

// Without a pivot the matrix of the first key and the channels at its time place an object alike.
TEST_F(Objects, BothModesPlaceTheFirstKeyAlike)
{
    const double angles[][3] = {{0, 0, 0}, {90, 0, 0}, {0, 90, 0}, {0, 0, 90}, {10, 20, 30}, {-170, 85, 200}};
    for (const auto& [h, p, b] : angles) {
        const std::string scene =
            head + "AddNullObject n\n" + motion("ObjectMotion", {{{1, 2, 3, h, p, b, 1.5, -2, 0.5}, 15}}, 0);
        convert(scene);
        const auto moving = tv::local_matrix(instance("n"), 2400);
        convert(scene, {{"import_keyframe0_only", 1}});
        const auto still = tv::local_matrix(instance("n"), 2400);
        for (std::size_t i = 0; i < 16; ++i) EXPECT_NEAR(moving[i], still[i], 1e-5) << h << " " << p << " " << b;
    }
}

} // namespace
