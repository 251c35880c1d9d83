// Operands of a scene's keywords: numbers, envelopes, motions. Each leaves what it can't use to the keywords behind it.
#pragma once
#include <cstdint>
#include <string>
#include <string_view>

#include "restore/facts/scene_facts.h"
#include "restore/facts/scene_text.h"

namespace restore {

inline constexpr std::string_view envelope_word = "(envelope)";

class SceneValues {
public:
    SceneValues(std::FILE* file, SceneFacts& facts) : text(file), facts_(facts) {}

    // False with an oddity where no number stands; `value` stays then. Whole numbers drop what is behind the point.
    bool number(double& value);
    bool whole(int32_t& value);
    bool flag(bool& value); // any number but 0

    void number_or_envelope(Number& out);
    void colour(Colour& out);
    void motion(Curve& out);
    void envelope(Curve& out); // behind its word

    void odd(std::string what) { facts_.oddities.add(text.line(), std::move(what)); }

    SceneText text;

private:
    bool is_envelope();
    bool counts(const char* what, int64_t& channels, int64_t& keys);
    void keys(Curve& out, int64_t count);
    void end_behaviour(Curve& out);

    SceneFacts& facts_;
};

} // namespace restore
