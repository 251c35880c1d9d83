#include "restore/facts/curve.h"

#include <gtest/gtest.h>

namespace {

using restore::Curve;
using restore::EndBehaviour;
using restore::Key;

// One channel: 0 at frame 0, 10 at frame 10, 0 at frame 30.
Curve hill(Key middle, EndBehaviour end = EndBehaviour::stop)
{
    middle.frame = 10;
    return {.channels = 1, .keys = {{.frame = 0}, middle, {.frame = 30}}, .values = {0, 10, 0}, .end = end};
}

TEST(Curve, SpansAreSplinesWithTheKeysOwnTangents)
{
    // Slope 10 at the first key, -10 at the last, 0 at the middle: 0.125 * 10 + 0.5 * 10, and the same mirrored.
    EXPECT_NEAR(hill({}).value(0, 5), 6.25, 1e-12);
    EXPECT_NEAR(hill({}).value(0, 20), 6.25, 1e-12);
    // in = (0.8 * 0.7 * 1.4 * 10 - 0.8 * 1.3 * 0.6 * 10) / 2 * 2 * 10 / 30 = 8 / 15,
    // out = (0.8 * 1.3 * 1.4 * 10 - 0.8 * 0.7 * 0.6 * 10) / 2 * 2 * 20 / 30 = 112 / 15.
    const Curve shaped = hill({.frame = 0, .tension = 0.2f, .continuity = 0.3f, .bias = 0.4f});
    EXPECT_NEAR(shaped.value(0, 5), 6.25 - 8.0 / 15 / 8, 1e-6);
    EXPECT_NEAR(shaped.value(0, 20), 6.25 + 112.0 / 15 / 8, 1e-6);
}

TEST(Curve, LinearKeyIsReachedOnAStraightLineAndLeavesItsNeighboursTheirTangents)
{
    // A ship waits from frame 0 to 42, then flies.
    Curve ship{.channels = 1,
               .keys = {{.frame = 0}, {.frame = 42, .linear = true}, {.frame = 84}},
               .values = {5, 5, 20},
               .end = EndBehaviour::stop};
    EXPECT_EQ(ship.value(0, 21), 5);
    EXPECT_EQ(ship.value(0, 41.5), 5);
    // The flight begins with the slope that the spline has at the key, 7.5, and ends with 15.
    EXPECT_NEAR(ship.value(0, 63), 12.5 + 0.125 * 7.5 - 0.125 * 15, 1e-12);
    ship.keys[1].linear = false;
    EXPECT_LT(ship.value(0, 30), 4.9);
}

TEST(Curve, EndBehaviourHoldsOnBothSides)
{
    const Curve stopped = hill({}), repeated = hill({}, EndBehaviour::repeat);
    const Curve reset{.channels = 1, .keys = {{.frame = 0}, {.frame = 10}}, .values = {3, 7}};
    EXPECT_EQ(stopped.value(0, -1), 0);
    EXPECT_EQ(stopped.value(0, 99), 0);
    EXPECT_EQ(reset.value(0, -1), 3);
    EXPECT_EQ(reset.value(0, 10), 7);
    EXPECT_EQ(reset.value(0, 10.5), 3);
    EXPECT_NEAR(repeated.value(0, 35), repeated.value(0, 5), 1e-12);
    EXPECT_NEAR(repeated.value(0, -10), repeated.value(0, 20), 1e-12);
    const Curve alone{.channels = 2, .keys = {{.frame = 4}}, .values = {1, 2}, .end = EndBehaviour::repeat};
    EXPECT_EQ(alone.value(1, 100), 2);
}

TEST(Curve, KeysOutOfOrderAreSortedAndTheLastOfAFrameStays)
{
    Curve curve{.channels = 2, .keys = {{.frame = 20}, {.frame = 0}, {.frame = 20}}, .values = {1, 2, 3, 4, 5, 6}};
    EXPECT_FALSE(curve.sort());
    ASSERT_EQ(curve.keys.size(), 2u);
    EXPECT_EQ(curve.values, (std::vector<double>{3, 4, 5, 6}));
    EXPECT_TRUE(curve.sort());
}

} // namespace
