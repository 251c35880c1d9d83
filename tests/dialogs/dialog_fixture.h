// A host that opens the plug-in's dialogs and answers them by a script.
#pragma once
#include <algorithm>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "lib/import/lw/base/option_variables.h"
#include "lib/platform/dialogs/dialog_script.h"
#include "lib/services/import_io.h"
#include "lib/toolkit/calls/environment.h"
#include "tests/support/run_plugin.h"

void lw_add_dialog_templates(); // what the library does as it is loaded

class Dialogs : public testing::Test {
protected:
    Dialogs()
    {
        lw_add_dialog_templates();
        plugin_test::start_fresh();
        place_ = directory_.path() + "/plug/";
        directory_.write("plug/readme", "");
        initialize();
        tv::set_environment("TV_WORKING_DIR", directory_.path());
    }
    ~Dialogs() override { tv::set_environment("TV_WORKING_DIR", ""); }

    void initialize() { plugin_test::call({{"initialize", place_}}); }
    static void set_root(const char* root) { Import_IO_Copy_String(&lw_newtek_root_directory, root); }

    // One dialog command, answered; what was seen.
    std::vector<std::string> show(std::vector<std::string> events, const char* command = "show_options_dialog")
    {
        platform::DialogScript script(std::move(events));
        platform::set_dialog_face(&script);
        run_ = plugin_test::call({{"parent_hWnd", 0}, {command, 0}});
        platform::set_dialog_face(nullptr);
        return script.transcript;
    }
    // The Options dialog with the chooser opened, and Cancel or OK of the Options dialog behind it.
    std::vector<std::string> choose(std::vector<std::string> events)
    {
        events.insert(events.begin(), "press 109");
        events.emplace_back("press 2");
        return show(std::move(events));
    }

    std::string file() const { return directory_.read("plug/imp_lw.ini"); }

    const plugin_test::TemporaryDirectory directory_;
    std::string place_; // the plug-in's directory
    plugin_test::PluginRun run_;
};

inline long count_of(const std::vector<std::string>& transcript, const std::string& head)
{
    return std::count_if(transcript.begin(), transcript.end(),
                         [&](const std::string& line) { return line.rfind(head, 0) == 0; });
}

// The first line that begins so; empty when there is none.
inline std::string line_of(const std::vector<std::string>& transcript, const std::string& head)
{
    for (const std::string& line : transcript) {
        if (line.rfind(head, 0) == 0) return line;
    }
    return "";
}
