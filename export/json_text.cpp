#include "export/json_text.h"

#include <charconv>
#include <utility>

namespace json_text {

double short_number(float value)
{
    char text[64];
    const auto end = std::to_chars(text, text + sizeof text, value).ptr;
    double result = 0;
    std::from_chars(text, end, result);
    return result;
}

void Object::key(const char* name)
{
    if (!first_) text_ += ',';
    first_ = false;
    if (lines_) text_ += "\n  ";
    text_ += '"';
    text_ += name;
    text_ += lines_ ? "\": " : "\":";
}

void Object::member(const char* name, const Json& value)
{
    key(name);
    text_ += value.dump();
}

void Object::array(const char* name, std::size_t count, const std::function<Json(std::size_t)>& element)
{
    key(name);
    text_ += '[';
    for (std::size_t i = 0; i < count; ++i) {
        if (i != 0) text_ += ',';
        if (lines_) text_ += "\n    ";
        text_ += element(i).dump();
    }
    text_ += lines_ && count != 0 ? "\n  ]" : "]";
}

std::string Object::finish()
{
    text_ += lines_ ? "\n}\n" : "}";
    return std::move(text_);
}

} // namespace json_text
