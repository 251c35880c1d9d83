// Writes scene files as the programs of the time did.
#pragma once
#include <string>
#include <vector>

#include "tools/samples/shapes.h"

namespace samples {

struct SceneKey {
    int frame = 0;
    Vec3 position{}, rotation{}; // rotation: heading, pitch, bank in degrees
    Vec3 scale{1, 1, 1};
    double tension = 0, continuity = 0, bias = 0;
    bool linear = false;
};

struct EnvelopeKey {
    int frame;
    double value;
};

enum EndBehavior { reset = 0, stop = 1, repeat = 2 };

class SceneText {
public:
    explicit SceneText(std::string line_end = "\n") : line_end_(std::move(line_end)) {}
    SceneText& line(const std::string& text = "");
    SceneText& head(int last_frame); // LWSC, 1, frames 0 to last_frame at 30 a second
    SceneText& motion(const std::string& keyword, const std::vector<SceneKey>& keys, EndBehavior end = stop);
    SceneText& at_rest(const std::string& keyword, Vec3 position, Vec3 rotation = {}, Vec3 scale = {1, 1, 1});
    SceneText& envelope(const std::string& keyword, const std::vector<EnvelopeKey>& keys, EndBehavior end = stop);
    void write(const std::string& path) const;

private:
    std::string line_end_, text_;
};

std::string number(double value); // "0.25", "-29.3434", "1"
std::string numbers(const std::vector<double>& values);

} // namespace samples
