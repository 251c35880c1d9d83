// Splines, by values worked by hand, and the calls that make keys.
#include "lib/toolkit/animation/animation.h"

#include "tests/toolkit/toolkit_fixture.h"
#include "gmock/gmock.h"

using testing::HasSubstr;

namespace {

using tv::Extrapolation;

tv::Key key(int32_t time, float value, float tension = 0, float continuity = 0, float bias = 0)
{
    tv::Key made;
    made.time = time;
    made.value = value;
    made.tension = tension;
    made.continuity = continuity;
    made.bias = bias;
    return made;
}

// Steps of 1000 and 3000 and of 2 and 6, so that the correction for unequal spacing shows.
const std::vector<tv::Key> curve = {key(0, 0), key(1000, 2, 0.5f, 0.25f, -0.5f), key(4000, 8, 0.5f)};

double value(double time, Extrapolation before = Extrapolation::reset, Extrapolation after = Extrapolation::reset)
{
    return tv::evaluate(curve, before, after, time, 99);
}

TEST(Spline, TangentsByHand)
{
    // in  = (0.5*0.75*0.5/2 * 2 + 0.5*1.25*1.5/2 * 6) * 2*1000/4000
    // out = (0.5*1.25*0.5/2 * 2 + 0.5*0.75*1.5/2 * 6) * 2*3000/4000
    EXPECT_DOUBLE_EQ(tv::tangents(curve, 1).in, 1.5);
    EXPECT_DOUBLE_EQ(tv::tangents(curve, 1).out, 3);
    EXPECT_DOUBLE_EQ(tv::tangents(curve, 0).out, 2); // the one difference
    EXPECT_DOUBLE_EQ(tv::tangents(curve, 2).in, 3);  // halved by its tension
    EXPECT_EQ(tv::tangents({key(5, 7)}, 0).out, 0);
}

TEST(Spline, ValuesByHand)
{
    EXPECT_DOUBLE_EQ(value(0), 0);
    EXPECT_DOUBLE_EQ(value(500), 0.125 * 2 + 0.5 * 2 - 0.125 * 1.5);
    EXPECT_DOUBLE_EQ(value(1000), 2);
    EXPECT_DOUBLE_EQ(value(2500), 0.5 * 2 + 0.125 * 3 + 0.5 * 8 - 0.125 * 3);
    EXPECT_DOUBLE_EQ(value(4000), 8);
    EXPECT_EQ(tv::evaluate({}, Extrapolation::cycle, Extrapolation::cycle, 3, 99), 99);
}

TEST(Spline, BeforeTheFirstAndBehindTheLastKey)
{
    using enum Extrapolation;
    EXPECT_EQ(value(-1, reset, constant), 0);
    EXPECT_EQ(value(4001, constant, reset), 0);
    EXPECT_EQ(value(4001, reset, constant), 8);
    EXPECT_EQ(value(-1, constant, reset), 0);
    EXPECT_DOUBLE_EQ(value(-3500, cycle, reset), value(500));
    EXPECT_DOUBLE_EQ(value(4000 * 3 + 2500, reset, cycle), value(2500));
    EXPECT_EQ(tv::evaluate({key(5, 7)}, cycle, cycle, 1000, 0), 7); // a range without length
    const std::vector<tv::Key> wide = {key(INT32_MIN, 0), key(INT32_MAX, 1)};
    EXPECT_NEAR(tv::evaluate(wide, reset, reset, 0, 0), 0.5, 1e-9); // the difference of the times fits no int32
}

TEST(Spline, KeysOutOfOrderAndAtOneTime)
{
    tv::Channel channel;
    channel.keys = {key(100, 1), key(0, 5), key(100, 2), key(50, 3), key(100, 4), key(0, 6)};
    const std::vector<tv::Key> keys = tv::sorted_keys(channel);
    ASSERT_EQ(keys.size(), 3u);
    EXPECT_EQ(keys[0].value, 6);
    EXPECT_EQ(keys[1].value, 3);
    EXPECT_EQ(keys[2].value, 4);
    EXPECT_DOUBLE_EQ(tv::evaluate(channel, 100, 0), 4);
}

class Keys : public Toolkit {
protected:
    void SetUp() override
    {
        Toolkit::SetUp();
        add_node("a");
        add_node("b");
    }
    static void* handle(const char* name, std::size_t slot) { return tv::instance_channel(instance(name), slot); }
};

TEST_F(Keys, AreNumberedInTheWholeSceneAndTakeTheirValue)
{
    EXPECT_EQ(add_key(handle("a", 10), 0, 1, 0.25f, 0.5f, 0.75f, "constant"), 1);
    EXPECT_EQ(add_key(handle("b", 13), 0, 2), 2);
    EXPECT_EQ(add_key(handle("a", 10), 160, 3, 0, 0, 0, "cycle"), 3);
    const tv::Channel& x = at("a").channels->position[0];
    ASSERT_EQ(x.keys.size(), 2u);
    EXPECT_EQ(x.keys[0].tension, 0.25f);
    EXPECT_EQ(x.keys[0].continuity, 0.5f);
    EXPECT_EQ(x.keys[0].bias, 0.75f);
    EXPECT_EQ(x.keys[1].time, 160);
    EXPECT_EQ(x.keys[1].value, 3);
    EXPECT_EQ(x.before, Extrapolation::cycle); // the last call decides
    EXPECT_EQ(x.after, Extrapolation::cycle);
    // A key that isn't the last one, and one that isn't there.
    float five = 5, turn[] = {1, 0, 0, 0};
    int32_t id = 1, scratch = 0;
    Tv_AnimController(&scratch, w("ctrlrid"), handle("a", 10), w("keyframe"), &id, w("kfid"), id, w("value"), &five,
                      w("quatvalue"), turn, 1, 0);
    EXPECT_EQ(x.keys[0].value, 5);
    EXPECT_EQ(x.keys[0].quaternion[0], 1);
    Tv_AnimController(&scratch, w("ctrlrid"), handle("a", 10), w("keyframe"), &id, w("kfid"), 2, w("value"), &five, 1,
                      0);
    EXPECT_THAT(report(), HasSubstr("no key with the number 2"));
}

TEST_F(Keys, HandlesThatAreNoneAreRefused)
{
    int32_t local = 0;
    void* const channel = handle("a", 10);
    EXPECT_EQ(add_key(&local, 0, 1), 0);
    EXPECT_EQ(add_key(nullptr, 0, 1), 0);
    Tv_Remove(w("instance"), "a", 0);
    EXPECT_EQ(add_key(channel, 0, 1), 0);
    EXPECT_EQ(reports.size(), 3u);
    EXPECT_THAT(last_line(), HasSubstr(R"("ctrlrid","<>")"));
    EXPECT_EQ(tv::scene().keys_made, 0u);
}

TEST_F(Keys, SlotsOfBothTables)
{
    EXPECT_EQ(add_key(handle("a", 15), 0, 2), 1);
    EXPECT_EQ(at("a").channels->scale[2].keys.size(), 1u);
    EXPECT_EQ(tv::instance_channel(77, 10), nullptr);
    Tv_Camera("c", 0);
    EXPECT_EQ(add_key(tv::camera_channel(0, 14), 0, 30), 2);
    EXPECT_EQ(tv::scene().cameras[0].channels.roll.keys[0].value, 30);
    EXPECT_THAT(last_line(), HasSubstr(R"("<c:14>")"));
}

TEST_F(Keys, ReplacingKeepsAndMovingTakesThemAlong)
{
    void* const channel = handle("a", 16);
    const int32_t order = 8;
    add_key(channel, 0, 1);
    Tv_Instance("a", w("replacechannels"), w("eulerrotate"), 0);
    Tv_Instance("a", w("eulerorder"), &order, 0);
    EXPECT_EQ(at("a").channels->rotation[0].keys.size(), 1u);
    EXPECT_TRUE(tv::is_animated(at("a")));
    for (int i = 0; i < 1000; ++i) add_node(("more " + std::to_string(i)).c_str()); // handles outlive growth
    Tv_Instance("a", w("moveallchannels"), w("instance"), "b", 0);
    EXPECT_FALSE(tv::is_animated(at("a")));
    EXPECT_TRUE(tv::is_animated(at("b")));
    EXPECT_NE(add_key(channel, 160, 2), 0);
    EXPECT_EQ(at("b").channels->rotation[0].keys.size(), 2u);
    Tv_Instance("a", w("moveallchannels"), w("instance"), "b", 0); // nothing to move: those of b stay
    EXPECT_TRUE(tv::is_animated(at("b")));
    Tv_Instance("b", w("moveallchannels"), w("instance"), "b", 0);
    EXPECT_TRUE(tv::is_animated(at("b")));
    EXPECT_TRUE(reports.empty());
}

TEST_F(Keys, ConstantChannelsAreMarkedUntilAKeyComes)
{
    for (const int32_t time : {0, 160, 320}) {
        add_key(handle("a", 10), time, 4, 0.5f);
        add_key(handle("a", 11), time, static_cast<float>(time));
    }
    tv::optimize_instance_channels(instance("a"));
    const tv::InstanceChannels& channels = *at("a").channels;
    EXPECT_TRUE(channels.position[0].constant);
    EXPECT_FALSE(channels.position[1].constant);
    EXPECT_FALSE(channels.position[2].constant); // no keys at all
    EXPECT_EQ(channels.position[0].keys.size(), 3u);
    add_key(handle("a", 10), 480, 5);
    EXPECT_FALSE(channels.position[0].constant);
}

} // namespace
