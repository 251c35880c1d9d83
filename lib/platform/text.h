// Text as file systems of then and now compare it: ASCII letters in any case, the separators of all systems.
// Bytes above 0x7F are left alone, so that Latin-1 and UTF-8 pass through alike; nothing here asks the locale.
#pragma once
#include <algorithm>
#include <string>
#include <string_view>

namespace platform {

constexpr char lower_case(char c)
{
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

constexpr bool is_letter(char c)
{
    return lower_case(c) >= 'a' && lower_case(c) <= 'z';
}

inline std::string lower_case(std::string_view text)
{
    std::string out(text);
    for (char& c : out) c = lower_case(c);
    return out;
}

constexpr bool equal_in_any_case(std::string_view a, std::string_view b)
{
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](char x, char y) { return lower_case(x) == lower_case(y); });
}

constexpr bool ends_in_any_case(std::string_view text, std::string_view ending)
{
    return text.size() >= ending.size() && equal_in_any_case(text.substr(text.size() - ending.size()), ending);
}

// Both slashes, on every system: stored paths come from others.
constexpr bool is_separator(char c)
{
    return c == '/' || c == '\\';
}

// "c:" in front.
constexpr bool has_drive(std::string_view path)
{
    return path.size() >= 2 && is_letter(path[0]) && path[1] == ':';
}

// What stands after the last slash, backslash or colon (an Amiga volume's); empty where one of them ends the path.
constexpr std::string_view last_element(std::string_view path)
{
    return path.substr(path.find_last_of("/\\:") + 1); // npos + 1 is 0
}

// A file's name up to its last dot; a dot in front begins no extension.
constexpr std::string_view without_extension(std::string_view name)
{
    const std::size_t dot = name.rfind('.');
    return dot == 0 ? name : name.substr(0, dot); // npos: all of it
}

// Of a path: what stands after its last element's last dot; empty where there is none, or only one in front.
constexpr std::string_view extension_of(std::string_view path)
{
    const std::string_view name = last_element(path);
    return name.substr(std::min(without_extension(name).size() + 1, name.size()));
}

} // namespace platform
