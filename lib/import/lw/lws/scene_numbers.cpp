#include "lib/import/lw/lws/scene_numbers.h"

#include <charconv>
#include <clocale>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <limits>

#include "lib/import/lw/base/arrays.h"
#include "lib/import/lw/base/report.h"
#include "lib/import/lw/lws/keywords.h"
#include "lib/import/lw/lws/tokenizer.h"
#include "lib/toolkit/vc4_tv.h"

// Envelopes within envelopes; one more is no number. No program writes even two.
static constexpr int deepest_envelope = 256;
static int envelope_depth = 0; // of the number being read; 0 again after it

void lw_syntax_err(const char* message)
{
    lw_report(LW_ERROR, "%s Line number = %d. Last token parsed = '%s'\n", message, line_num,
              lws_keyword_name(last_token_read));
}

int32_t lws_truncate_to_int32(double value)
{
    if (std::isnan(value)) return 0;
    if (value >= 2147483647.0) return std::numeric_limits<int32_t>::max();
    if (value <= -2147483648.0) return std::numeric_limits<int32_t>::min();
    return static_cast<int32_t>(value);
}

static int64_t truncate_to_long(float value)
{
    if (std::isnan(value)) return 0;
    if (value >= 9223372036854775808.0f) return std::numeric_limits<int64_t>::max();
    if (value <= -9223372036854775808.0f) return std::numeric_limits<int64_t>::min();
    return static_cast<int64_t>(value);
}

// The number at the start of the token, as "%ld" takes it: what follows it doesn't matter, and one that doesn't fit is
// the nearest that does.
static bool token_as_long(const char* token, int64_t* value)
{
    const std::from_chars_result result = std::from_chars(token, token + std::strlen(token), *value);
    if (result.ec == std::errc::invalid_argument) return false;
    if (result.ec == std::errc::result_out_of_range)
        *value = token[0] == '-' ? std::numeric_limits<int64_t>::min() : std::numeric_limits<int64_t>::max();
    return true;
}

// Tokens that are no plain number: hexadecimal, infinite, tiny or huge ones, and numbers with something after them.
// "%f" decides, as it reads them where a point is the decimal sign; the token is rewritten where the program's locale
// has another.
static bool odd_token_as_float(const char* token, float* value)
{
    const char* sign = std::localeconv()->decimal_point;
    if (!sign || !*sign) sign = ".";
    const std::size_t sign_length = std::strlen(sign);
    char text[lws_token_size + 16];
    std::size_t length = 0;
    for (bool point_seen = false; *token && length + sign_length < sizeof text; ++token) {
        if (*token == '.' && !point_seen) {
            point_seen = true;
            std::memcpy(text + length, sign, sign_length);
            length += sign_length;
        } else if (*token == '.' || std::strchr(sign, *token)) {
            break; // a second point ends the number, and so does the locale's own sign
        } else {
            text[length++] = *token;
        }
    }
    text[length] = 0;
    return std::sscanf(text, "%f", value) == 1;
}

static bool token_as_float(const char* token, float* value)
{
    const char* const end = token + std::strlen(token);
    float number = 0;
    const std::from_chars_result result = std::from_chars(token, end, number);
    if (result.ec != std::errc() || result.ptr != end || !(std::isnormal(number) || number == 0))
        return odd_token_as_float(token, value);
    *value = number;
    return true;
}

static bool token_is_envelope()
{
    return std::strcmp(token_buffer, "(envelope)") == 0;
}

static bool starts_integer(char c)
{
    return (c >= '0' && c <= '9') || c == '-';
}

// The envelope in the place of a number: true with its value. The depth is counted here, so that a file of nothing but
// the word "(envelope)" ends with a message for each of few levels instead of at the end of the stack.
static bool envelope_in_place(float* value)
{
    *value = 0;
    if (envelope_depth >= deepest_envelope) return false;
    ++envelope_depth;
    const int16_t good = lws_get_envelope_float(value);
    --envelope_depth;
    return good != 0;
}

int16_t lws_get_long(int64_t* value)
{
    if (!lw_get_next_token()) {
        lw_syntax_err("Expecting an integer but premature End-of-file reached instead.");
        return 0;
    }
    if (token_is_envelope()) {
        float first = 0;
        if (envelope_in_place(&first)) {
            *value = truncate_to_long(first);
            return 1;
        }
    } else if (starts_integer(token_buffer[0]) && token_as_long(token_buffer, value)) {
        return 1;
    }
    lw_syntax_err("Syntax error. Expecting an integer number.");
    return 0;
}

int16_t lws_get_float(float* value)
{
    if (!lw_get_next_token()) {
        lw_syntax_err("Expecting a floating point number but premature End-of-file reached instead.");
        return 0;
    }
    if (token_is_envelope()) {
        if (envelope_in_place(value)) return 1;
    } else if ((starts_integer(token_buffer[0]) || token_buffer[0] == 'e') && token_as_float(token_buffer, value)) {
        return 1;
    }
    lw_syntax_err("Syntax error. Expecting a floating point number.");
    return 0;
}

int16_t lws_get_key_tail(lw_motion_key* key)
{
    return lws_get_int16(&key->frame) && lws_get_int16(&key->linear) && lws_get_float(&key->tension) &&
           lws_get_float(&key->continuity) && lws_get_float(&key->bias);
}

int16_t lws_get_envelope_key(lw_motion_key* key)
{
    return lws_get_float(&key->position[0]) && lws_get_key_tail(key);
}

int16_t lws_get_end_behavior(lw_motion_key* last_key)
{
    const int16_t keyword = lw_next_keyword();
    if (keyword == KW_NONE) return 0;
    if (keyword == KW_END_BEHAVIOR) return lws_get_int16(&last_key->end_behavior);
    lw_syntax_err("Expecting token 'EndBehavior' after motion curve data");
    return 1;
}

// Nothing but the first key's value is wanted, so the keys share one record: what a file claims to hold costs no
// memory.
static bool read_envelope_keys(int16_t count, lw_motion_key* key, float* value)
{
    for (int16_t i = 0; i < count; ++i) {
        if (!lws_get_envelope_key(key)) return false;
        if (i == 0) *value = key->position[0];
    }
    return lws_get_end_behavior(key);
}

int16_t lws_get_envelope_float(float* value)
{
    *value = 0;
    int64_t channels;
    int16_t count;
    if (!lws_get_long(&channels) || !lws_get_int16(&count)) return 0;
    if (count < 1) return 1;
    lw_motion_key* key = nullptr;
    if (!lw_try_allocate(&key, 1, lws_no_room_for_keys)) return 0;
    *key = {};
    const bool good = read_envelope_keys(count, key, value);
    Tv_Free_Memory(key);
    if (!good) {
        *value = 0;
        return 0;
    }
    scn->has_animation = 1;
    return 1;
}

int16_t lws_get_int16(int16_t* value)
{
    int64_t number;
    if (!lws_get_long(&number)) return 0;
    *value = static_cast<int16_t>(static_cast<uint64_t>(number));
    return 1;
}

int16_t lws_get_int32(int32_t* value)
{
    int64_t number;
    if (!lws_get_long(&number)) return 0;
    *value = static_cast<int32_t>(static_cast<uint64_t>(number));
    return 1;
}

int16_t lws_get_color(float color[3])
{
    for (int i = 0; i < 3; ++i) {
        int64_t number;
        if (!lws_get_long(&number)) return 0;
        color[i] = static_cast<float>(static_cast<double>(number) / 255.0);
        if (color[i] < 0.0f) color[i] = 0.0f;
        if (color[i] > 1.0f) color[i] = 1.0f;
    }
    return 1;
}
