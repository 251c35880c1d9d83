// lwimport options: the plug-in's options, kept from one run to the next.
#include <algorithm>
#include <cstdio>
#include <filesystem>

#include "host/command_line.h"
#include "host/commands.h"
#include "host/failure.h"
#include "host/options_file.h"

namespace host {

static const OptionKey& key_called(const std::string& name)
{
    std::vector<std::string> known;
    for (const OptionKey& option : option_keys()) {
        if (option.key == name) return option;
        known.emplace_back(option.key);
    }
    const std::string near = nearest_word(name, known);
    throw WrongUse("no such option: " + name +
                   (near.empty() ? "; lwimport options list shows them" : "; did you mean " + near + "?"));
}

static std::string value_of(const OptionKey& option)
{
    return options_file_value(option.key).value_or(std::string(option.standard));
}

static void list()
{
    for (const OptionKey& option : option_keys())
        std::printf("%-26.*s %-8s %.*s\n", static_cast<int>(option.key.size()), option.key.data(),
                    value_of(option).c_str(), static_cast<int>(option.help.size()), option.help.data());
}

static void reset()
{
    std::error_code error;
    std::filesystem::remove(options_file_path(), error);
    if (error) throw Failure("cannot remove " + options_file_path() + ": " + error.message());
}

int options_command(Arguments arguments)
{
    std::vector<std::string> words;
    CommandLine line("  lwimport options list\n"
                     "  lwimport options get KEY\n"
                     "  lwimport options set KEY VALUE\n"
                     "  lwimport options reset\n"
                     "  lwimport options path\n",
                     "Keeps the plug-in's options in its own options file. Options given to a conversion come first.",
                     {"lwimport options list", "all keys with their values",
                      "lwimport options set newtek_root_directory /archive/newtek", "where objects and images lie",
                      "lwimport options reset", "back to the standard values"});
    line.inputs("word", words, 0, 3);
    if (!line.parse(arguments)) return status_done;
    if (words.empty())
        throw WrongUse("the options dialog is not there yet; use lwimport options list, get, set, reset or path");
    const std::string& verb = words[0];
    const std::vector<std::string> verbs = {"list", "get", "set", "reset", "path"};
    if (std::find(verbs.begin(), verbs.end(), verb) == verbs.end()) {
        const std::string near = nearest_word(verb, verbs);
        throw WrongUse("no such word: options " + verb +
                       (near.empty() ? "; see lwimport options --help" : "; did you mean " + near + "?"));
    }
    const std::size_t wanted = verb == "get" ? 2 : verb == "set" ? 3 : 1;
    if (words.size() != wanted)
        throw WrongUse("lwimport options " + verb +
                       (wanted == 3   ? " takes a KEY and a VALUE"
                        : wanted == 2 ? " takes a KEY"
                                      : " takes no further words"));
    if (verb == "list")
        list();
    else if (verb == "get")
        std::printf("%s\n", value_of(key_called(words[1])).c_str());
    else if (verb == "set")
        set_options_file_value(key_called(words[1]).key, words[2]);
    else if (verb == "reset")
        reset();
    else
        std::printf("%s\n", options_file_path().c_str());
    return status_done;
}

} // namespace host
