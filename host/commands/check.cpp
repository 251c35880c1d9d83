// lwimport check: the plug-in's own file test, a line for each file.
#include <cstdio>

#include "host/command_line.h"
#include "host/commands/commands.h"
#include "host/failure.h"
#include "host/finding/references.h"
#include "host/path_display.h"
#include "host/plugin_loader.h"

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
        const FileHead head = read_head(input);
        const bool ours = call_plugin({{"validate_header", input, {}}}) == 1;
        if (!ours) status = status_failed;
        const char* const kind = head.kind == FileKind::scene ? ": Lightwave scene" : ": Lightwave object";
        std::printf("%s%s\n", shown_path(input).c_str(), ours ? kind : (": no, it " + head.problem).c_str());
    }
    return status;
}

} // namespace host
