// Numbers and the envelopes that may stand in their place, with every message that reading them can make.
#include <clocale>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <limits>

#include "lib/import/lw/lws/scene_numbers.h"
#include "lib/toolkit/memory.h"
#include "tests/scene/tokenizer_fixture.h"

using Strings = std::vector<std::string>;

namespace {

class Numbers : public scene_tests::TokenizerTest {
protected:
    float read_float(std::string_view text)
    {
        open(text);
        float value = 0;
        EXPECT_TRUE(lws_get_float(&value)) << text;
        return value;
    }

    int64_t read_long(std::string_view text)
    {
        open(text);
        int64_t value = 0;
        EXPECT_TRUE(lws_get_long(&value)) << text;
        return value;
    }
};

// "ZoomFactor" is the keyword that the fixture has dispatched.
std::string message(const char* text, int line = 0)
{
    return std::string("4 ") + text + " Line number = " + std::to_string(line) + ". Last token parsed = 'ZoomFactor'\n";
}

constexpr const char* no_integer = "Syntax error. Expecting an integer number.";
constexpr const char* no_float = "Syntax error. Expecting a floating point number.";
constexpr const char* integer_at_end = "Expecting an integer but premature End-of-file reached instead.";
constexpr const char* float_at_end = "Expecting a floating point number but premature End-of-file reached instead.";

// Such as programs write, and such as nobody should.
const char* const tokens_of_all_kinds[] = {
    "0",
    "-0",
    "1",
    "-29.3434",
    "0.0600761",
    "-2.1e-006",
    "30.000000",
    "42.450001",
    "3.4028235e+38",
    "3.4028236e38",
    "1e39",
    "-1e39",
    "1e-37",
    "1e-40",
    "1e-46",
    "0e99999",
    "16777217",
    "16777219",
    "0.1",
    "123456789012345678901234567890",
    "1.",
    "-.5",
    "-.",
    "-",
    "--1",
    "-e",
    "e",
    "e5",
    "1e",
    "1e+",
    "1e-",
    "1ex",
    "1.5.5",
    "12abc",
    "12,5",
    "0x10",
    "0x1.8p3",
    "0x",
    "-0x",
    "0xg",
    "0x.8",
    "0x1p-200",
    "1d5",
    "-inf",
    "-infinity",
    "-infi",
    "-nan",
    "-nan(12)",
    "-nan(1",
    "-i",
    "1_000",
    "1'000",
    "00012",
    "1e0000000000000000000005",
    "0.00000000000000000000000000000000000000000000001",
};

TEST_F(Numbers, AFloatIsWhatTheFormatPercentFGives)
{
    for (const char* token : tokens_of_all_kinds) {
        float expected = 7;
        const bool good = std::sscanf(token, "%f", &expected) == 1;
        open(token);
        float value = 7;
        EXPECT_EQ(lws_get_float(&value), good ? 1 : 0) << token;
        uint32_t expected_bits, bits;
        std::memcpy(&expected_bits, &expected, 4);
        std::memcpy(&bits, &value, 4);
        EXPECT_EQ(bits, expected_bits) << token;
        EXPECT_EQ(messages(), good ? Strings{} : Strings{message(no_float)}) << token;
    }
}

TEST_F(Numbers, AnIntegerIsWhatTheFormatPercentLdGives)
{
    for (const char* token : tokens_of_all_kinds) {
        long long expected = 7;
        const bool good = token[0] != 'e' && std::sscanf(token, "%lld", &expected) == 1;
        open(token);
        int64_t value = 7;
        EXPECT_EQ(lws_get_long(&value), good ? 1 : 0) << token;
        EXPECT_EQ(value, expected) << token;
        EXPECT_EQ(messages(), good ? Strings{} : Strings{message(no_integer)}) << token;
    }
    EXPECT_EQ(read_long("9223372036854775808"), std::numeric_limits<int64_t>::max());
    EXPECT_EQ(read_long("-99999999999999999999"), std::numeric_limits<int64_t>::min());
}

TEST_F(Numbers, AnotherLocaleChangesNothing)
{
    // check.sh makes one there. Not for other tests: libraries that ask for the user's locale then leak in glibc.
    setenv("LOCPATH", BUILD_DIR "/../locales", 0);
    const char* name = nullptr;
    for (const char* tried : {"de_DE.UTF-8", "de_DE.utf8", "de_DE", "fr_FR.UTF-8", "fr_FR.utf8"})
        if (!name && std::setlocale(LC_ALL, tried)) name = tried;
    if (!name) GTEST_SKIP() << "no locale with a decimal comma is installed";
    float comma = 0;
    ASSERT_EQ(std::sscanf("1,5", "%f", &comma), 1);
    ASSERT_EQ(comma, 1.5f) << name << " has no decimal comma";
    EXPECT_EQ(read_float("1.5"), 1.5f);
    EXPECT_EQ(read_float("1.5x"), 1.5f); // the slow road
    EXPECT_EQ(read_float("1,5"), 1.0f);
    EXPECT_EQ(read_float("1.5,5"), 1.5f);
    EXPECT_EQ(read_float("0x1.8p3"), 12.0f);
    std::setlocale(LC_ALL, "C");
    unsetenv("LOCPATH");
}

TEST_F(Numbers, SignsAndPointsInFrontAreSyntaxErrors)
{
    for (const char* token : {"+1", ".5", "inf", "nan", "x", "E5", "(1)"}) {
        float number;
        int64_t integer;
        open(token);
        EXPECT_FALSE(lws_get_float(&number)) << token;
        open(token);
        EXPECT_FALSE(lws_get_long(&integer)) << token;
        EXPECT_EQ(messages(), (Strings{message(no_float), message(no_integer)})) << token;
    }
}

TEST_F(Numbers, TheEndOfTheFileHasItsOwnMessage)
{
    float number;
    int64_t integer;
    open("\n");
    EXPECT_FALSE(lws_get_float(&number));
    open("x\n \n");
    lw_get_next_token();
    EXPECT_FALSE(lws_get_long(&integer));
    EXPECT_EQ(messages(), (Strings{message(float_at_end), message(integer_at_end, 1)}));
}

TEST_F(Numbers, AnEnvelopeCountsAsItsFirstValue)
{
    const std::string two_keys = " 1 2 0.25 0 0 0 0 0 9 30 0 0 0 0 stray tokens EndBehavior 1 next";
    EXPECT_EQ(read_float("(envelope)" + two_keys), 0.25f);
    EXPECT_EQ(tokens(), (Strings{"0:next"}));
    EXPECT_EQ(scn->has_animation, 1);
    EXPECT_EQ(read_long("(envelope) 1 1 2.9 0 0 0 0 0 EndBehavior 0"), 2);
    EXPECT_EQ(read_long("(envelope) 1 1 -2.9 0 0 0 0 0 EndBehavior 0"), -2);
    EXPECT_EQ(read_long("(envelope) 1 1 1e30 0 0 0 0 0 EndBehavior 0"), std::numeric_limits<int64_t>::max());
    EXPECT_EQ(read_long("(envelope) 1 1 -inf 0 0 0 0 0 EndBehavior 0"), std::numeric_limits<int64_t>::min());
    EXPECT_EQ(read_long("(envelope) 1 1 -nan 0 0 0 0 0 EndBehavior 0"), 0);
    EXPECT_EQ(messages(), Strings{});
}

TEST_F(Numbers, AnEnvelopeWithoutKeysReadsNothingBehindItsCount)
{
    for (const char* count : {"0", "-1", "32768", "40000", "65536", "-65536"}) {
        EXPECT_EQ(read_float(std::string("(envelope) 1 ") + count + " FirstFrame"), 0.0f) << count;
        EXPECT_EQ(tokens(), (Strings{"0:FirstFrame"})) << count;
    }
    EXPECT_EQ(scn->has_animation, 0);
    EXPECT_EQ(read_float("(envelope) 1 65537 3 0 0 0 0 0 EndBehavior 0 next"), 3.0f); // 1 in 16 bits
    EXPECT_EQ(tokens(), (Strings{"0:next"}));
}

TEST_F(Numbers, EachPlaceOfAnEnvelopeMayBeAnEnvelopeAgain)
{
    const std::string one = "(envelope) 1 1 1 0 0 0 0 0 EndBehavior 0 ";
    EXPECT_EQ(read_float("(envelope) " + one + one + one + one + one + one + one + one + "EndBehavior " + one + "next"),
              1.0f);
    EXPECT_EQ(tokens(), (Strings{"0:next"}));
    EXPECT_EQ(messages(), Strings{});
}

TEST_F(Numbers, AnotherKeywordInFrontOfEndBehaviorIsLostWithAMessage)
{
    EXPECT_EQ(read_float("(envelope) 1 1\n5 0 0 0 0 0\nFirstFrame 3"), 5.0f);
    EXPECT_EQ(messages(), (Strings{message("Expecting token 'EndBehavior' after motion curve data", 2)}));
    EXPECT_EQ(tokens(), (Strings{"2:3"}));
    EXPECT_EQ(scn->has_animation, 1);
}

TEST_F(Numbers, EachLevelOfAFailedEnvelopeAddsItsMessage)
{
    const struct {
        const char* text;
        Strings expected;
    } cases[] = {
        {"(envelope) 1", {message(integer_at_end), message(no_float)}},
        {"(envelope) 1 x", {message(no_integer), message(no_float)}},
        {"(envelope) 1 1 x", {message(no_float), message(no_float)}},
        {"(envelope) 1 1 0 0 0 0 0 0", {message(no_float)}}, // no "EndBehavior": the body says nothing
        {"(envelope) 1 1 0 0 0 0 0 0 EndBehavior", {message(integer_at_end), message(no_float)}},
        {"(envelope) (envelope) 1 +", {message(no_integer), message(no_integer), message(no_float)}},
    };
    for (const auto& one : cases) {
        open(one.text);
        float value = 7;
        EXPECT_FALSE(lws_get_float(&value)) << one.text;
        EXPECT_EQ(value, 0.0f) << one.text;
        EXPECT_EQ(messages(), one.expected) << one.text;
    }
    EXPECT_EQ(scn->has_animation, 0);
}

TEST_F(Numbers, EnvelopesWithinEnvelopesEndAfter256Levels)
{
    const auto nested = [](int depth) {
        std::string text, tail;
        for (int i = 0; i < depth; ++i) text += "(envelope) 1 1\n", tail += "\n0 0 0 0 0 EndBehavior 0";
        return text + "1" + tail;
    };
    float value = 0;
    open(nested(256));
    EXPECT_TRUE(lws_get_float(&value));
    EXPECT_EQ(value, 1.0f);
    EXPECT_EQ(messages().size(), 0u);
    // One more is no number, and each level that holds it says so.
    open(nested(257));
    EXPECT_FALSE(lws_get_float(&value));
    EXPECT_EQ(messages(), Strings(257, message(no_float, 256)));
    // A file of nothing else ends as soon; and the count of levels is back at none.
    open(nested(100000));
    EXPECT_FALSE(lws_get_float(&value));
    EXPECT_EQ(messages().size(), 257u);
    open(nested(256));
    EXPECT_TRUE(lws_get_float(&value));
}

TEST_F(Numbers, AnEnvelopeWithoutMemoryFailsWithABareMessage)
{
    open("(envelope) 1 32767 1");
    const uint64_t held = tv::allocations_held();
    tv::fail_allocation(1);
    float value;
    EXPECT_FALSE(lws_get_float(&value));
    tv::fail_allocation(0);
    EXPECT_EQ(messages(),
              (Strings{"4 Out of memory while allocating space for keyframe data list.", message(no_float)}));
    EXPECT_EQ(tv::allocations_held(), held);
}

TEST_F(Numbers, FieldsTakeTheLowBits)
{
    int16_t narrow = 7;
    int32_t wide = 7;
    open("65535 -65537 32768 4294967295 -2147483649 99999999999999999999 x");
    EXPECT_TRUE(lws_get_int16(&narrow));
    EXPECT_EQ(narrow, -1);
    EXPECT_TRUE(lws_get_int16(&narrow));
    EXPECT_EQ(narrow, -1);
    EXPECT_TRUE(lws_get_int16(&narrow));
    EXPECT_EQ(narrow, -32768);
    EXPECT_TRUE(lws_get_int32(&wide));
    EXPECT_EQ(wide, -1);
    EXPECT_TRUE(lws_get_int32(&wide));
    EXPECT_EQ(wide, 2147483647);
    EXPECT_TRUE(lws_get_int32(&wide));
    EXPECT_EQ(wide, -1);
    EXPECT_FALSE(lws_get_int32(&wide));
}

TEST_F(Numbers, ColorsAreLimited)
{
    float color[3];
    open("255 51 0 300 -1 (envelope) 1 1 127.9 0 0 0 0 0 EndBehavior 0 1 2 x");
    ASSERT_TRUE(lws_get_color(color));
    EXPECT_EQ(Strings({std::to_string(color[0]), std::to_string(color[1]), std::to_string(color[2])}),
              (Strings{"1.000000", "0.200000", "0.000000"}));
    ASSERT_TRUE(lws_get_color(color));
    EXPECT_EQ(color[0], 1.0f);
    EXPECT_EQ(color[1], 0.0f);
    EXPECT_EQ(color[2], static_cast<float>(127 / 255.0));
    EXPECT_FALSE(lws_get_color(color));
}

TEST_F(Numbers, TruncationToATimeIsLimited)
{
    EXPECT_EQ(lws_truncate_to_int32(160.9), 160);
    EXPECT_EQ(lws_truncate_to_int32(-160.9), -160);
    EXPECT_EQ(lws_truncate_to_int32(std::nan("")), 0);
    EXPECT_EQ(lws_truncate_to_int32(1e300), 2147483647);
    EXPECT_EQ(lws_truncate_to_int32(2147483647.5), 2147483647);
    EXPECT_EQ(lws_truncate_to_int32(-2147483648.5), -2147483647 - 1);
    EXPECT_EQ(lws_truncate_to_int32(-HUGE_VAL), -2147483647 - 1);
}

} // namespace
