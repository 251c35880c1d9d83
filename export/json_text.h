// JSON text as the exporters write it: members in the order in which they are added, and floats with no more digits
// than bring them back.
#pragma once
#include <cstddef>
#include <functional>
#include <nlohmann/json.hpp>
#include <string>

namespace json_text {

using Json = nlohmann::ordered_json;

// The number that reads as the float's shortest text. JSON's own numbers are doubles and would show all their digits.
double short_number(float value);

// A file's outermost object, written piece by piece: only one element at a time is held as a JSON value, since a scene
// may have a million nodes.
class Object {
public:
    // lines: a line for each member and each element of its arrays, for people and diffs; else as short as can be.
    explicit Object(bool lines) : lines_(lines) {}

    void member(const char* name, const Json& value);
    void array(const char* name, std::size_t count, const std::function<Json(std::size_t)>& element);
    std::string finish(); // the whole text; nothing can be added any more

private:
    void key(const char* name);

    std::string text_ = "{";
    bool first_ = true;
    const bool lines_;
};

} // namespace json_text
