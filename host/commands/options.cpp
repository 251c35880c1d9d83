// lwimport options: the plug-in's options, kept from one run to the next.
#include <algorithm>
#include <cstdio>
#include <filesystem>

#include "host/command_line.h"
#include "host/commands/commands.h"
#include "host/failure.h"
#include "host/options_file.h"
#include "host/plugin_loader.h"
#include "host/run_messages.h"
#include "host/say.h"
#include "lib/platform/dialogs/dialog_obstacle.h"
#include "lib/toolkit/report.h"

namespace host {

using messages::message;

static lw_option_number option_called(const std::string& name)
{
    if (const lw_option* const option = lw_find_option(name)) return option->number;
    std::vector<std::string> known;
    for (const lw_option& option : lw_options) known.emplace_back(option.word);
    throw WrongUse(message<"options-key-unknown">(name, nearest_word(name, known)));
}

static std::string value_of(lw_option_number option)
{
    return options_file_value(option).value_or(standard_value(lw_options[option]));
}

static void list()
{
    for (const lw_option& option : lw_options)
        std::printf("%-26s %-8s %s%s\n", option.word, value_of(option.number).c_str(), option.help,
                    option.number == LW_PRINT_STATISTICS ? " (convert: only with --stats)" : "");
}

static void reset()
{
    std::error_code error;
    std::filesystem::remove(options_file_path(), error);
    if (error) throw Failure(message<"options-not-removed">(options_file_path(), error.message()));
}

// Messages wait until the dialog's screen is gone; true when there was an error.
static bool tell(const std::vector<std::pair<int32_t, std::string>>& messages)
{
    bool failed = false;
    for (const auto& [level, text] : messages) {
        failed = failed || level > 3;
        say(reader_message(level, text));
    }
    return failed;
}

// "show_options_dialog" or "show_about_dialog", on the kept options.
static int show(const char* command)
{
    if (const std::string obstacle = platform::dialog_obstacle(); !obstacle.empty())
        throw Failure(message<"dialog-impossible">(obstacle));
    const std::filesystem::path directory = std::filesystem::path(options_file_path()).parent_path();
    std::error_code ignored; // OK in the dialog tells what can't be written
    std::filesystem::create_directories(directory, ignored);

    std::vector<std::pair<int32_t, std::string>> messages;
    const auto listen = [](void* context, int32_t level, const char* text) {
        static_cast<decltype(messages)*>(context)->emplace_back(level, text);
    };
    tv::set_report_sink(listen, &messages);
    const int32_t result = call_plugin({{"parent_hWnd"}, {"initialize", options_directory()}, {command}});
    tv::set_report_sink(nullptr, nullptr);
    if (tell(messages)) return status_failed;
    if (result == 1) say(message<"options-written">(options_file_path()));
    return status_done;
}

int options_command(Arguments arguments)
{
    std::vector<std::string> words;
    CommandLine line(
        "  lwimport options\n"
        "  lwimport options about\n"
        "  lwimport options list\n"
        "  lwimport options get KEY\n"
        "  lwimport options set KEY VALUE\n"
        "  lwimport options reset\n"
        "  lwimport options path\n",
        "Keeps the plug-in's options in its own options file. Options given to a conversion come first.\nWithout a "
        "word the Options dialog opens in the terminal, and with about the About box.",
        {"lwimport options", "all options in one dialog", "lwimport options list", "all keys with their values",
         "lwimport options set newtek_root_directory /archive/content", "where objects and images lie",
         "lwimport options reset", "back to the standard values"});
    line.inputs("word", words, 0, 3);
    if (!line.parse(arguments)) return status_done;
    if (words.empty()) return show("show_options_dialog");
    const std::string& verb = words[0];
    const std::vector<std::string> verbs = {"about", "list", "get", "set", "reset", "path"};
    if (std::find(verbs.begin(), verbs.end(), verb) == verbs.end()) {
        throw WrongUse(message<"options-verb-unknown">(verb, nearest_word(verb, verbs)));
    }
    const std::size_t wanted = verb == "get" ? 2 : verb == "set" ? 3 : 1;
    if (words.size() != wanted)
        throw WrongUse(wanted == 3   ? message<"options-needs-key-and-value">(verb)
                       : wanted == 2 ? message<"options-needs-key">(verb)
                                     : message<"options-needs-nothing">(verb));
    if (verb == "about") return show("show_about_dialog");
    if (verb == "list")
        list();
    else if (verb == "get")
        std::printf("%s\n", value_of(option_called(words[1])).c_str());
    else if (verb == "set")
        set_options_file_value(option_called(words[1]), words[2]);
    else if (verb == "reset")
        reset();
    else
        std::printf("%s\n", options_file_path().c_str());
    return status_done;
}

} // namespace host
