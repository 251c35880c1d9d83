// lwimport check: the plug-in's own file test, a line for each file.
#include <cstdio>

#include "host/command_line.h"
#include "host/commands/commands.h"
#include "host/failure.h"
#include "host/path_display.h"
#include "host/plugin_loader.h"
#include "restore/facts/file_head.h"

namespace host {

int check_command(Arguments arguments)
{
    std::vector<std::string> inputs;
    CommandLine line("  lwimport check IN…\n", "Tells which files are Lightwave objects or scenes; fails if one isn't.",
                     {"lwimport check *.lwo *.lws", "a line for each file"});
    line.inputs("input", inputs, 1, 1'000'000);
    if (!line.parse(arguments)) return status_done;
    int status = status_done;
    for (const std::string& input : inputs) {
        restore::FileHead head = restore::read_head(input);
        const bool ours = call_plugin({{"validate_header", input, {}}}) == 1;
        if (!ours) status = status_failed;
        std::string answer = head.kind == restore::FileKind::scene ? "Lightwave scene" : "Lightwave object";
        if (!ours) answer = "no";
        if (!ours && head.problem) {
            head.problem->values.front() = "it";
            answer += ", " + messages::text(*head.problem);
        }
        std::printf("%s: %s\n", shown_path(input).c_str(), answer.c_str());
    }
    return status;
}

} // namespace host
