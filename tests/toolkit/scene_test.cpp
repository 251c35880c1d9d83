// Names, the tree, and what may hang under what.
#include "lib/toolkit/words/trace.h"
#include "lib/toolkit/words/words.h"
#include "tests/toolkit/toolkit_fixture.h"
#include "gmock/gmock.h"

using testing::HasSubstr;
using testing::StartsWith;

namespace {

class Tree : public Toolkit {
protected:
    void SetUp() override
    {
        Toolkit::SetUp();
        tv::set_trace_file(nullptr);
    }
    static std::string parent_of(const char* name)
    {
        int32_t kind = -1;
        const char* parent = nullptr;
        Tv_Inquire_Instance(name, w("parent"), &kind, &parent, 0);
        return parent ? std::string(tv::word_text(kind)) + " " + parent : std::to_string(kind);
    }
    static void attach(const char* name, const char* kind, const char* parent)
    {
        Tv_Attach(w("instance"), name, w(kind), parent, 0);
    }
    static std::vector<std::string> children(const tv::ChildList& list)
    {
        std::vector<std::string> names;
        for (tv::Id id = list.first; id != tv::no_id; id = tv::scene().instances[id].next_sibling)
            names.push_back(tv::scene().instances[id].name);
        EXPECT_EQ(names.size(), list.count);
        return names;
    }
    static const tv::Object& object(const char* name)
    {
        return tv::scene().objects[tv::scene().find(tv::Kind::object, name)];
    }
};

TEST_F(Tree, StartsWithWorldAmbientLightAndTimeLine)
{
    EXPECT_EQ(instance("world"), 0u);
    EXPECT_EQ(tv::scene().find(tv::Kind::light, "defaultambient"), 0u);
    EXPECT_EQ(tv::scene().lights[0].model, tv::LightModel::ambient);
    EXPECT_EQ(tv::scene().time_line.frame_step, 1);
    EXPECT_EQ(tv::scene().time_line.frame_rate, 30);
}

TEST_F(Tree, AThingNamedAgainIsTheSameAndARemovedNameIsFree)
{
    add_node("a");
    add_node("a");
    EXPECT_EQ(tv::scene().instances.size(), 2u);
    const tv::Id first = instance("a");
    Tv_Remove(w("instance"), "a", 0);
    EXPECT_FALSE(tv::scene().instances[first].alive);
    EXPECT_EQ(instance("a"), tv::no_id);
    EXPECT_EQ(tv::scene().instances[0].children.count, 0u);
    add_node("a");
    EXPECT_NE(instance("a"), first);
    EXPECT_EQ(instance("A"), tv::no_id); // byte for byte
    Tv_Surface("a", 0);                  // each kind has names of its own
    EXPECT_EQ(tv::scene().find(tv::Kind::surface, "a"), 0u);
    Tv_Remove(w("instance"), "world", 0);
    EXPECT_THAT(report(), HasSubstr("ERR_SCENE_FIXED"));
}

TEST_F(Tree, AttachMovesAndKeepsTheOrderOfTheOthers)
{
    for (const char* const name : {"a", "b", "c", "d"}) add_node(name);
    attach("b", "instance", "d");
    EXPECT_THAT(children(at("world").children), testing::ElementsAre("a", "c", "d"));
    attach("a", "instance", "world"); // to the end
    EXPECT_THAT(children(at("world").children), testing::ElementsAre("c", "d", "a"));
    Tv_Detach(w("instance"), "a", 0);
    Tv_Detach(w("instance"), "a", 0);
    EXPECT_THAT(children(at("world").children), testing::ElementsAre("c", "d"));
    EXPECT_EQ(parent_of("a"), "0");
    EXPECT_EQ(parent_of("b"), "instance d");
    EXPECT_TRUE(reports.empty());
}

TEST_F(Tree, BadParentsHangUnderWorldAndAreReported)
{
    Tv_Add_Empty_Node(w("instance"), "lost", 0);
    attach("lost", "instance", "nowhere");
    EXPECT_THAT(report(), StartsWith("4 instance 'lost' can't hang under 'nowhere'"));
    EXPECT_EQ(parent_of("lost"), "instance world");
    add_node("a");
    Tv_Attach(w("instance"), "lost", 0, nullptr, 0); // the place of what was detached
    EXPECT_THAT(report(), HasSubstr("(ERR_SCENE_BAD_PARENT, Tv_Attach)"));
    attach("a", "instance", "a");
    EXPECT_THAT(report(), HasSubstr("ERR_SCENE_BAD_PARENT"));
    EXPECT_EQ(parent_of("a"), "instance world");
    attach("world", "instance", "a");
    EXPECT_THAT(report(), HasSubstr("ERR_SCENE_BAD_PARENT"));
    EXPECT_EQ(parent_of("world"), "0");
}

TEST_F(Tree, CyclesThroughInstancesAndObjectsAreFound)
{
    add_node("a");
    add_node("b", "instance", "a");
    add_node("c", "instance", "b");
    attach("a", "instance", "c");
    EXPECT_THAT(report(), HasSubstr("ERR_SCENE_BAD_PARENT"));
    EXPECT_EQ(parent_of("a"), "instance world");

    // Objects o and p: an instance of p stands in o, so no instance of o may stand in p, wherever it comes from.
    Tv_Add_Empty_Node(w("object"), "o", 0);
    Tv_Add_Empty_Node(w("object"), "p", 0);
    add_instance("an o", "o", "instance", "world");
    add_instance("p in o", "p", "object", "o");
    add_instance("second o", "o", "instance", "c");
    EXPECT_TRUE(reports.empty());
    add_instance("o in itself", "o", "object", "o");
    EXPECT_THAT(report(), HasSubstr("'o in itself' can't hang under 'o'"));
    add_instance("o in p", "o", "object", "p");
    EXPECT_THAT(report(), HasSubstr("ERR_SCENE_BAD_PARENT"));
    EXPECT_EQ(parent_of("o in p"), "instance world");
    add_node("group", "object", "p");
    attach("an o", "instance", "group");
    EXPECT_THAT(report(), HasSubstr("ERR_SCENE_BAD_PARENT"));
    // Giving a placed instance an object is the other way to close one.
    Tv_Add_Instance(w("instance"), "group", w("object"), "o", 0);
    EXPECT_THAT(report(), HasSubstr("ERR_SCENE_BAD_PARENT"));
    EXPECT_EQ(at("group").object, tv::no_id);
    std::vector<tv::Placement> places;
    EXPECT_TRUE(tv::place_all(tv::scene(), 0, 1000, places));
}

TEST_F(Tree, RemovingHangsTheChildrenUnderWorld)
{
    Tv_Add_Empty_Node(w("object"), "o", 0);
    add_instance("i", "o", "instance", "world");
    add_node("below", "instance", "i");
    add_node("inside", "object", "o");
    EXPECT_EQ(object("o").instance_count, 1u);
    Tv_Remove(w("object"), "o", 0);
    EXPECT_EQ(at("i").object, tv::no_id);
    EXPECT_EQ(parent_of("inside"), "instance world");
    Tv_Remove(w("instance"), "i", 0);
    EXPECT_EQ(parent_of("below"), "instance world");
    EXPECT_TRUE(reports.empty());
}

TEST_F(Tree, InquiriesTellMasterObjectAndChildren)
{
    add_points("o", {0, 0, 0});
    add_instance("i", "o", "instance", "world");
    add_node("child", "instance", "i");
    const char* master = nullptr;
    int32_t count = 0;
    Tv_Inquire_Instance("i", w("masterobject"), &master, 1, w("numchildren"), &count, 0);
    EXPECT_STREQ(master, "o");
    EXPECT_EQ(count, 1);
    Tv_Inquire_Instance("child", w("masterobject"), &master, 1, w("numchildren"), &count, 0);
    EXPECT_EQ(master, nullptr);
    EXPECT_EQ(count, 0);
    Tv_Inquire_Object("o", w("numprimitives"), &count, 1, 0);
    EXPECT_EQ(count, 1);
}

// No call recurses down the chain, and none walks all of it: that would overflow, or run into the time limit.
TEST_F(Tree, DeepChainsBuiltFromEitherEnd)
{
    constexpr int depth = 100000;
    const auto name = [](int i) { return "n" + std::to_string(i); };
    for (int i = 0; i < depth; ++i) Tv_Add_Empty_Node(w("instance"), name(i).c_str(), 0);
    for (int i = 0; i < depth; ++i) attach(name(i).c_str(), "instance", i ? name(i - 1).c_str() : "world");
    std::vector<tv::Placement> places;
    ASSERT_TRUE(tv::place_all(tv::scene(), 0, 2 * depth, places));
    EXPECT_EQ(places.back().depth, static_cast<uint32_t>(depth));
    float upper[3], lower[3];
    Tv_Compute_Worldspace_Extents(upper, lower, 0);
    for (int i = 0; i < depth; ++i) Tv_Detach(w("instance"), name(i).c_str(), 0);
    for (int i = 1; i < depth; ++i) attach(name(i - 1).c_str(), "instance", name(i).c_str()); // the child has children
    attach(name(depth - 1).c_str(), "instance", "world");
    EXPECT_TRUE(reports.empty());
    attach(name(depth - 1).c_str(), "instance", name(0).c_str());
    EXPECT_THAT(report(), HasSubstr("ERR_SCENE_BAD_PARENT"));
}

TEST_F(Tree, PlacesMultiplyAndAreBounded)
{
    const auto name = [](int i) { return "o" + std::to_string(i); };
    Tv_Add_Empty_Node(w("object"), "o0", 0);
    add_instance("root", "o0", "instance", "world");
    for (int i = 1; i <= 40; ++i) {
        Tv_Add_Empty_Node(w("object"), name(i).c_str(), 0);
        add_instance(("left " + name(i)).c_str(), name(i).c_str(), "object", name(i - 1).c_str());
        add_instance(("right " + name(i)).c_str(), name(i).c_str(), "object", name(i - 1).c_str());
    }
    std::vector<tv::Placement> places;
    EXPECT_FALSE(tv::place_all(tv::scene(), 0, 1000, places)); // of 2^41
    ASSERT_EQ(places.size(), 1000u);
    EXPECT_EQ(places[0].parent, 0u);
    for (std::size_t i = 1; i < places.size(); ++i) {
        ASSERT_LT(places[i].parent, i);
        EXPECT_EQ(places[i].depth, places[places[i].parent].depth + 1);
    }
}

TEST_F(Tree, ClearingForgetsEverything)
{
    add_node("a");
    void* const handle = tv::instance_channel(instance("a"), 10);
    const uint64_t before = tv::scene().revision;
    add_key(handle, 0, 1);
    tv::clear_scene();
    EXPECT_EQ(tv::scene().instances.size(), 1u);
    EXPECT_EQ(tv::scene().keys_made, 0u);
    EXPECT_GT(tv::scene().revision, before);
    EXPECT_EQ(instance("a"), tv::no_id);
    EXPECT_EQ(add_key(handle, 0, 1), 0); // the handle died with the scene
    EXPECT_THAT(report(), HasSubstr("ERR_ANIM_BAD_CHANNEL"));
}

} // namespace
