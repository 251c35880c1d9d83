#include "host/commands/inspection.h"

#include <utility>
#include <vector>

#include "lib/platform/memory.h"

namespace host {

std::optional<Inspection> inspect(CommandLine& line, Arguments arguments)
{
    ImportOptions options;
    std::vector<std::string> inputs;
    Inspection result;
    line.inputs("input", inputs, 1, 1);
    line.flag("--json", result.json, "print JSON");
    add_import_options(line, options, false);
    if (!line.parse(arguments)) return std::nullopt;
    options.tell_missing = false;
    prepare_imports(options);
    result.run = import_file(inputs[0], options);
    locate_images(result.run.files, result.run.image_directories);
    result.input = std::move(inputs[0]);
    platform::throw_if_memory_ran_short();
    return result;
}

} // namespace host
