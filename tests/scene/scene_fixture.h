// A scene in a directory of its own, converted as a host would: the calls that the plug-in makes and what it says.
#pragma once
#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "lib/toolkit/scene/scene.h"
#include "tests/scene/scene_text.h"
#include "tests/support/run_plugin.h"
#include "tools/lwob_writer.h"

namespace scene_tests {

using Strings = std::vector<std::string>;
using Words = std::vector<plugin_test::Word>;

struct Conversion {
    int32_t result = -1; // 0 good, 1 failed
    Strings calls;       // of the trace, from behind the root's making to the run's end
    Strings messages;    // "4 text", the plug-in's and then the toolkit's

    // The calls that begin so, in order.
    Strings calls_of(const std::string& function) const
    {
        Strings found;
        for (const std::string& call : calls)
            if (call.starts_with("[\"" + function + "\"")) found.push_back(call);
        return found;
    }

    std::string text() const
    {
        std::string all;
        for (const std::string& call : calls) all += call + "\n";
        return all;
    }
};

// A triangle at (0,0,0), (1,0,0), (0,1,2) of the file's space, on one surface.
inline std::string triangle()
{
    lw_tools::ObjectWriter object;
    object.surface_names = {"hull"};
    const unsigned a = object.point(0, 0, 0), b = object.point(1, 0, 0), c = object.point(0, 1, 2);
    object.polygon({a, b, c});
    return object.to_bytes();
}

class SceneTest : public testing::Test {
protected:
    void file(const std::string& name, std::string_view bytes) { directory_.write(name, bytes); }

    Conversion convert(std::string_view scene, Words words = {}, int stop_at_poll = 0)
    {
        file("test.lws", scene);
        words.emplace_back("print_statistics", 0);
        const plugin_test::Run run = plugin_test::convert("test.lws", words, stop_at_poll);
        EXPECT_FALSE(run.run_left_open);
        Conversion conversion = {run.result, {}, run.reports};
        conversion.messages.insert(conversion.messages.end(), run.toolkit.begin(), run.toolkit.end());
        bool inside = false; // the root's instance is the first thing whose name is noted as an instance's
        for (const std::string& line : run.trace) {
            if (line.starts_with("[\"Import_IO_Cleanup\"") || line.starts_with("[\"Import_IO_Abort_Cleanup\"")) break;
            if (inside) conversion.calls.push_back(line);
            if (line.starts_with("[\"Import_IO_SaveHandleName\",\"instance\"")) inside = true;
        }
        return conversion;
    }

private:
    plugin_test::TemporaryDirectory directory_;
};

} // namespace scene_tests
