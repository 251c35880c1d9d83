// Where instances stand, and the box round them.
#include <cfloat>
#include <cmath>
#include <numbers>
#include <random>

#include "lib/toolkit/words/trace.h"
#include "tests/toolkit/toolkit_fixture.h"
#include "gmock/gmock.h"

using testing::ElementsAre;
using testing::FloatNear;

namespace {

using Triple = std::array<double, 3>;
constexpr float quarter = static_cast<float>(std::numbers::pi / 2);

Triple transform(const std::array<double, 16>& m, const Triple& p)
{
    Triple out;
    for (std::size_t i = 0; i < 3; ++i) out[i] = p[0] * m[i] + p[1] * m[4 + i] + p[2] * m[8 + i] + m[12 + i];
    return out;
}

class Place : public Toolkit {
protected:
    void SetUp() override
    {
        Toolkit::SetUp();
        tv::set_trace_file(nullptr);
    }
    // One key at time 0 on a slot of the channel table.
    static void set(const char* name, std::size_t slot, float value)
    {
        add_key(tv::instance_channel(instance(name), slot), 0, value);
    }
    static void expect_goes(const char* name, const Triple& from, const Triple& to)
    {
        const Triple got = transform(tv::local_matrix(at(name), 0), from);
        for (std::size_t i = 0; i < 3; ++i) EXPECT_NEAR(got[i], to[i], 1e-6) << "axis " << i;
    }
    static void set_pivot(const char* name, float x, float y, float z, int16_t enabled = 1)
    {
        Tv_Local_Axes* axes = nullptr;
        Tv_Inquire_Instance(name, w("localaxes"), &axes, 0);
        axes->axes_matrix[3][0] = x;
        axes->axes_matrix[3][1] = y;
        axes->axes_matrix[3][2] = z;
        axes->origin_enabled = enabled;
        Tv_Instance(name, w("localaxes"), axes, 0);
    }
    static void move(const char* name, float x, float y, float z)
    {
        const float way[] = {x, y, z};
        float m[4][4];
        Tv_Matrix_Identity(m);
        Tv_Matrix_Append_Transform(m, w("postmultiply"), w("translate"), way, 0);
        Tv_Transform(w("instance"), name, w("postmultiply"), w("matrix"), m, 0);
    }
    void expect_box(const std::array<float, 3>& high, const std::array<float, 3>& low)
    {
        float upper[3], lower[3];
        Tv_Compute_Worldspace_Extents(upper, lower, 0);
        for (std::size_t i = 0; i < 3; ++i) {
            EXPECT_FLOAT_EQ(upper[i], high[i]) << i;
            EXPECT_FLOAT_EQ(lower[i], low[i]) << i;
        }
    }
};

TEST_F(Place, TurnsAboutZThenXThenY)
{
    add_node("a");
    set("a", 18, quarter);
    expect_goes("a", {1, 0, 0}, {0, 1, 0});
    set("a", 16, quarter);
    expect_goes("a", {1, 0, 0}, {0, 0, 1}); // X first would leave it at (0, 1, 0)
    set("a", 17, quarter);
    expect_goes("a", {1, 0, 0}, {1, 0, 0});
    expect_goes("a", {0, 0, 1}, {0, -1, 0});
}

TEST_F(Place, TakesThePivotOffBeforeTheScale)
{
    add_node("a");
    for (std::size_t slot = 13; slot < 16; ++slot) set("a", slot, slot == 13 ? 3.0f : 1.0f);
    set("a", 18, quarter);
    set("a", 12, 5);
    set_pivot("a", 1, 0, 0);
    expect_goes("a", {2, 0, 0}, {0, 3, 5});
    set_pivot("a", 1, 0, 0, 0); // not enabled
    expect_goes("a", {2, 0, 0}, {0, 6, 5});
}

TEST_F(Place, StaticMatrixCountsOnlyWithoutKeys)
{
    add_node("a");
    move("a", 1, 2, 3);
    set_pivot("a", 9, 9, 9); // belongs to channels
    expect_goes("a", {0, 0, 0}, {1, 2, 3});
    Tv_Instance("a", w("replacechannels"), w("eulerrotate"), 0);
    expect_goes("a", {0, 0, 0}, {1, 2, 3}); // channels without keys
    set_pivot("a", 0, 0, 0, 0);
    set("a", 10, 7);
    expect_goes("a", {1, 1, 1}, {8, 1, 1}); // what has no channel: position 0, scale 1, rotation 0
}

TEST_F(Place, ChildrenOfAnObjectShowInEachInstance)
{
    Tv_Add_Empty_Node(w("object"), "group", 0);
    add_points("dot", {0, 0, 0});
    add_instance("left", "group", "instance", "world");
    add_instance("right", "group", "instance", "world");
    add_instance("dot", "dot", "object", "group");
    move("left", -5, 0, 0);
    move("right", 5, 0, 0);
    move("dot", 0, 1, 0);
    expect_box({5, 1, 0}, {-5, 1, 0});
    std::vector<tv::Placement> places;
    ASSERT_TRUE(tv::place_all(tv::scene(), 0, 100, places));
    EXPECT_EQ(places.size(), 5u);
}

TEST_F(Place, ExtentsFollowTheScene)
{
    expect_box({-FLT_MAX, -FLT_MAX, -FLT_MAX}, {FLT_MAX, FLT_MAX, FLT_MAX});
    const float nan = std::nanf(""), inf = INFINITY;
    add_points("o", {1, 2, 3, nan, 50, 0, 60, inf, 0, -1, -2, -3});
    Tv_Add_Instance(w("instance"), "i", w("object"), "o", 0);
    expect_box({-FLT_MAX, -FLT_MAX, -FLT_MAX}, {FLT_MAX, FLT_MAX, FLT_MAX}); // not reachable
    Tv_Attach(w("instance"), "i", w("instance"), "world", 0);
    expect_box({1, 2, 3}, {-1, -2, -3});
    move("i", 10, 0, 0);
    expect_box({11, 2, 3}, {9, -2, -3});
    Tv_Instance("i", w("resetmatrix"), 0);
    for (const int32_t time : {0, 1000})
        add_key(tv::instance_channel(instance("i"), 11), time, static_cast<float>(time));
    expect_box({1, 2, 3}, {-1, -2, -3});
    const int32_t current = 1000;
    Tv_Animation(w("currtime"), &current, 0);
    expect_box({1, 1002, 3}, {-1, 998, -3});
    Tv_Detach(w("instance"), "i", 0);
    expect_box({-FLT_MAX, -FLT_MAX, -FLT_MAX}, {FLT_MAX, FLT_MAX, FLT_MAX});
}

TEST_F(Place, ManyInstancesMeasureTheSameAsPointByPoint)
{
    std::mt19937 random(7);
    std::uniform_real_distribution<float> within(-1, 1);
    std::vector<float> points(3 * 5000);
    for (float& p : points) p = within(random) * within(random) * 1e3f;
    points[300] = NAN;
    add_points("cloud", points);
    Triple high{-DBL_MAX, -DBL_MAX, -DBL_MAX}, low{DBL_MAX, DBL_MAX, DBL_MAX};
    for (int i = 0; i < 20; ++i) {
        const std::string name = "cloud " + std::to_string(i);
        add_instance(name.c_str(), "cloud", "instance", "world");
        float m[4][4];
        Tv_Matrix_Identity(m);
        for (int row = 0; row < 4; ++row)
            for (int column = 0; column < 3; ++column) m[row][column] = within(random);
        Tv_Transform(w("instance"), name.c_str(), w("postmultiply"), w("matrix"), m, 0);
        const std::array<double, 16> matrix = tv::local_matrix(at(name.c_str()), 0);
        for (std::size_t p = 0; p < points.size(); p += 3) {
            if (p == 300) continue;
            const Triple out = transform(matrix, {points[p], points[p + 1], points[p + 2]});
            for (std::size_t k = 0; k < 3; ++k) {
                high[k] = std::max(high[k], out[k]);
                low[k] = std::min(low[k], out[k]);
            }
        }
    }
    float upper[3], lower[3];
    Tv_Compute_Worldspace_Extents(upper, lower, 0);
    for (std::size_t k = 0; k < 3; ++k) {
        EXPECT_EQ(upper[k], static_cast<float>(high[k]));
        EXPECT_EQ(lower[k], static_cast<float>(low[k]));
    }
}

TEST(VectorMath, ByHand)
{
    float m[4][4], a[3] = {1, 2, 3}, b[3] = {0, 3, 4}, zero[3] = {0, 0, 0}, scratch[3];
    Tv_Matrix_Identity(m);
    m[0][1] = 10; // a column vector: x gets 10 y
    Tv_Vector_Transform(1, 0, 1, 1, 1, 1, a, m, a);
    EXPECT_THAT(a, ElementsAre(21, 2, 3));
    Tv_Vector_Normalize(b);
    EXPECT_THAT(b, ElementsAre(0, FloatNear(0.6f, 1e-7f), FloatNear(0.8f, 1e-7f)));
    Tv_Vector_Normalize(zero);
    EXPECT_THAT(zero, ElementsAre(0, 0, 0));
    EXPECT_FLOAT_EQ(Tv_Vector_Direction(zero, b, scratch), 1);
    Tv_Vector_Reflect(a);
    Tv_Vector_Scale(a, 2, a);
    Tv_Vector_Add(a, b, a);
    EXPECT_THAT(a, ElementsAre(-42, FloatNear(-3.4f, 1e-6f), FloatNear(-5.2f, 1e-6f)));
    float n[4][4];
    Tv_Matrix_Identity(n);
    n[0][0] = 2;
    Tv_Matrix_Multiply(1, m, n, m); // m * n, into an input
    EXPECT_EQ(m[0][0], 2);
    EXPECT_EQ(m[0][1], 10); // n * m would give 20
}

} // namespace
