// lwimport call: words straight to the plug-in's entry point, and nothing else done.
#include <charconv>
#include <cstdio>
#include <cstring>

#include "host/command_line.h"
#include "host/commands/commands.h"
#include "host/failure.h"
#include "host/plugin_loader.h"
#include "host/run_messages.h"
#include "host/say.h"
#include "lib/import/lw/base/option_table.h"
#include "lib/services/host.h"
#include "lib/toolkit/report.h"
#include "lib/toolkit/words/trace.h"

namespace host {

using messages::message;

static Word parse_word(std::string_view argument)
{
    const std::size_t equals = argument.find('=');
    Word word{std::string(argument.substr(0, equals))};
    if (equals == std::string_view::npos) return word;
    const std::string_view value = argument.substr(equals + 1);
    const lw_option* const option = lw_find_option(word.name);
    if (!option || option->kind != LW_OPTION_FLAG) { // only flags stand as integers in their slots
        word.text = std::string(value);
        return word;
    }
    long long number = 0;
    const auto [end, error] = std::from_chars(value.data(), value.data() + value.size(), number);
    if (error != std::errc{} || end != value.data() + value.size() || number < INTPTR_MIN || number > INTPTR_MAX)
        throw WrongUse(message<"call-word-no-integer">(word.name, value));
    word.integer = static_cast<intptr_t>(number);
    return word;
}

int call_command(Arguments arguments)
{
    std::string plugin_directory, trace;
    CommandLine line("  lwimport call [--plugin-dir DIR/] [--trace FILE] WORD[=VALUE]…\n",
                     "Passes the words to the plug-in's entry point as they stand, from the current directory, with no "
                     "search path\nand nothing else done, and prints result=N.",
                     {"lwimport call validate_header=ship.lwo", "is it one of ours?",
                      "lwimport call execute_geometry_converter filename=ship.lwo compute_normals=0",
                      "one conversion, with one option of the plug-in"});
    line.text("--plugin-dir", "DIR/", plugin_directory,
              "first pass \"initialize\" with this directory, in a call of its own");
    line.text("--trace", "FILE", trace, "write every call that the plug-in makes, a JSON array a line");
    const std::size_t head = line.leading_options(arguments);
    if (!line.parse(arguments.first(head))) return status_done;
    std::vector<Word> words;
    for (const char* const argument : arguments.subspan(head)) words.push_back(parse_word(argument));
    if (words.empty() && plugin_directory.empty()) throw WrongUse(message<"call-word-missing">());

    if (!trace.empty() && !tv::set_trace_file(trace.c_str()))
        throw Failure(message<"trace-unwritable">(trace, std::strerror(errno)));
    services::Host host;
    host.report = [](int32_t level, std::string_view text) { say(reader_message(level, text)); };
    host.print = print_latin1;
    services::set_host(std::move(host));
    tv::set_report_sink([](void*, int32_t level, const char* text) { say(reader_message(level, text)); }, nullptr);

    if (!plugin_directory.empty()) call_plugin({{"initialize", plugin_directory, {}}});
    const int32_t result = call_plugin(std::move(words));
    std::printf("result=%d\n", result);
    return status_done;
}

} // namespace host
