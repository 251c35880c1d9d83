#include "tools/samples/scene_text.h"

#include <cstdio>

namespace samples {

std::string number(double value)
{
    char text[40];
    std::snprintf(text, sizeof text, "%g", value + 0.0);
    return text;
}

std::string numbers(const std::vector<double>& values)
{
    std::string out;
    for (const double value : values) out += (out.empty() ? "" : " ") + number(value);
    return out;
}

SceneText& SceneText::line(const std::string& text)
{
    text_ += text + line_end_;
    return *this;
}

SceneText& SceneText::head(int last_frame)
{
    line("LWSC").line("1").line();
    line("FirstFrame 0").line("LastFrame " + std::to_string(last_frame)).line("FrameStep 1");
    return line("FramesPerSecond 30.000000").line();
}

SceneText& SceneText::motion(const std::string& keyword, const std::vector<SceneKey>& keys, EndBehavior end)
{
    line(keyword + " (unnamed)").line("  9").line("  " + std::to_string(keys.size()));
    for (const SceneKey& key : keys) {
        line("  " + numbers({key.position.x, key.position.y, key.position.z, key.rotation.x, key.rotation.y,
                             key.rotation.z, key.scale.x, key.scale.y, key.scale.z}));
        line("  " + std::to_string(key.frame) + (key.linear ? " 1 " : " 0 ") +
             numbers({key.tension, key.continuity, key.bias}));
    }
    return line("EndBehavior " + std::to_string(end));
}

SceneText& SceneText::at_rest(const std::string& keyword, Vec3 position, Vec3 rotation, Vec3 scale)
{
    return motion(keyword, {{.position = position, .rotation = rotation, .scale = scale}});
}

SceneText& SceneText::envelope(const std::string& keyword, const std::vector<EnvelopeKey>& keys, EndBehavior end)
{
    line(keyword + " (envelope)").line("  1").line("  " + std::to_string(keys.size()));
    for (const EnvelopeKey& key : keys) {
        line("  " + number(key.value)).line("  " + std::to_string(key.frame) + " 0 0 0 0");
    }
    return line("EndBehavior " + std::to_string(end));
}

void SceneText::write(const std::string& path) const
{
    lw_tools::write_file(path, text_);
}

} // namespace samples
