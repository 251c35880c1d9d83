// Scene text for the tests, put together from its parts.
#pragma once
#include <cstdio>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

namespace scene_tests {

inline const std::string head = "LWSC\n1\n\n";

struct Key {
    std::vector<double> values; // nine: position, angles in degrees, scale
    int frame = 0;
    double tension = 0, continuity = 0, bias = 0;
};

inline std::string number(double value)
{
    char text[40];
    std::snprintf(text, sizeof text, "%.9g", value);
    return text;
}

// "ObjectMotion", "LightMotion" or "CameraMotion" with its block.
inline std::string motion(std::string_view keyword, const std::vector<Key>& keys, int end_behavior = 1)
{
    std::string text = std::string(keyword) + " (unnamed)\n  9\n  " + std::to_string(keys.size()) + "\n";
    for (const Key& key : keys) {
        for (const double value : key.values) text += "  " + number(value);
        text += "\n  " + std::to_string(key.frame) + " 0 " + number(key.tension) + " " + number(key.continuity) + " " +
                number(key.bias) + "\n";
    }
    return text + "EndBehavior " + std::to_string(end_behavior) + "\n";
}

// One key with the angles and the size of an object left alone.
inline std::string placed_at(std::string_view keyword, double x, double y, double z)
{
    return motion(keyword, {{{x, y, z, 0, 0, 0, 1, 1, 1}}});
}

// An envelope of one key a value, 10 frames apart.
inline std::string envelope(std::initializer_list<double> values)
{
    std::string text = "(envelope)\n  1\n  " + std::to_string(values.size()) + "\n";
    int frame = 0;
    for (const double value : values) {
        text += "  " + number(value) + "\n  " + std::to_string(frame) + " 0 0 0 0\n";
        frame += 10;
    }
    return text + "EndBehavior 1\n";
}

} // namespace scene_tests
