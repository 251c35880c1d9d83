#include "restore/facts/scene_values.h"

#include <algorithm>
#include <charconv>
#include <cmath>

#include "restore/facts/scene_reader.h"

namespace restore {

namespace {

constexpr std::size_t most_channels = 16; // of a curve that is believed

// The number that a token begins with. A plus sign and a missing zero ahead of the point are let through; what is too
// large or none at all, such as "nan", is refused.
bool parse(std::string_view token, double& value)
{
    if (token.starts_with('+')) token.remove_prefix(1);
    double parsed = 0;
    const auto [end, error] = std::from_chars(token.data(), token.data() + token.size(), parsed);
    if (error != std::errc() || !std::isfinite(parsed)) return false;
    value = parsed;
    return true;
}

int32_t to_int32(double value)
{
    return static_cast<int32_t>(std::clamp(value, -2147483648.0, 2147483647.0));
}

} // namespace

bool SceneValues::number(double& value)
{
    const std::string_view token = text.token();
    if (parse(token, value)) return true;
    odd(token.empty() ? std::string("the file ends where a number should stand")
                      : "a number should stand where \"" + std::string(token.substr(0, 40)) + "\" stands");
    text.put_back();
    return false;
}

bool SceneValues::whole(int32_t& value)
{
    double any = 0;
    if (!number(any)) return false;
    value = to_int32(any);
    return true;
}

bool SceneValues::flag(bool& value)
{
    double any = 0;
    if (!number(any)) return false;
    value = any != 0;
    return true;
}

bool SceneValues::is_envelope()
{
    if (text.token() == envelope_word) return true;
    text.put_back();
    return false;
}

bool SceneValues::counts(const char* what, int64_t& channels, int64_t& keys)
{
    double channels_said = 0, keys_said = 0;
    if (!number(channels_said) || !number(keys_said)) return false;
    channels = static_cast<int64_t>(std::clamp(channels_said, -1.0, 1e6));
    keys = static_cast<int64_t>(std::clamp(keys_said, -1.0, 1e15));
    if (keys >= 0 && keys <= max_curve_keys) return true;
    odd(std::string(what) + " of " + std::to_string(keys) + " keys");
    return false;
}

// Whole keys only: one that breaks off isn't kept. The count is the file's word, so no memory is taken ahead for it.
void SceneValues::keys(Curve& out, int64_t count)
{
    for (int64_t i = 0; i < count; ++i) {
        double shape[5]; // frame, linear flag, tension, continuity, bias
        const std::size_t had = out.values.size();
        bool whole_key = true;
        for (std::size_t k = 0; whole_key && k < out.channels; ++k) whole_key = number(out.values.emplace_back());
        for (std::size_t k = 0; whole_key && k < std::size(shape); ++k) whole_key = number(shape[k]);
        if (!whole_key) {
            out.values.resize(had);
            return;
        }
        out.keys.push_back({.frame = shape[0],
                            .tension = static_cast<float>(shape[2]),
                            .continuity = static_cast<float>(shape[3]),
                            .bias = static_cast<float>(shape[4]),
                            .linear = shape[1] != 0});
    }
}

void SceneValues::end_behaviour(Curve& out)
{
    if (text.token() != "EndBehavior") {
        text.put_back();
        if (!out.keys.empty()) odd("no EndBehavior behind the keys");
        return;
    }
    int32_t said = 0;
    if (!whole(said)) return;
    if (said < 0 || said > 2) odd("an EndBehavior of " + std::to_string(said));
    out.end = said == 1 ? EndBehaviour::stop : said == 2 ? EndBehaviour::repeat : EndBehaviour::reset;
}

void SceneValues::envelope(Curve& out)
{
    int64_t channels = 0, count = 0;
    if (!counts("an envelope", channels, count)) return;
    if (channels < 1 || channels > static_cast<int64_t>(most_channels)) {
        odd("an envelope of " + std::to_string(channels) + " channels");
        return;
    }
    out.channels = static_cast<std::size_t>(channels);
    keys(out, count);
    end_behaviour(out);
    if (!out.sort()) odd("an envelope's keys aren't in the order of their frames");
}

void SceneValues::number_or_envelope(Number& out)
{
    Number read;
    if (!is_envelope()) {
        read.given = number(read.value);
        if (read.given) out = std::move(read);
        return;
    }
    Curve curve;
    envelope(curve);
    if (curve.keys.empty()) return;
    read.given = true;
    read.value = curve.values.front();
    read.envelope = std::make_shared<const Curve>(std::move(curve));
    out = std::move(read);
}

void SceneValues::colour(Colour& out)
{
    Colour read;
    if (!is_envelope()) {
        read.given = true;
        for (double& component : read.value) read.given = read.given && number(component);
        if (read.given) out = std::move(read);
        return;
    }
    read.operand.begin = text.begin();
    Curve curve;
    envelope(curve);
    read.operand.end = text.end();
    out.operand = read.operand; // also of one that isn't understood
    if (curve.keys.empty()) return;
    if (curve.channels != 3) {
        odd("a colour's envelope of " + std::to_string(curve.channels) + " channels");
        return;
    }
    read.given = true;
    std::copy_n(curve.values.begin(), 3, read.value.begin());
    read.envelope = std::make_shared<const Curve>(std::move(curve));
    out = std::move(read);
}

// The channel count is told where it isn't nine, but nine values are read: so does the importer.
void SceneValues::motion(Curve& out)
{
    out = {.channels = channel::count, .keys = {}, .values = {}};
    text.token(); // its name, "(unnamed)" as a rule
    int64_t channels = 0, count = 0;
    if (!counts("a motion", channels, count)) {
        facts_.odd_motions = true;
        return;
    }
    if (channels != channel::count) {
        facts_.odd_motions = true;
        odd("a motion of " + std::to_string(channels) + " channels");
    }
    keys(out, count);
    end_behaviour(out);
    if (!out.sort()) odd("a motion's keys aren't in the order of their frames");
}

} // namespace restore
