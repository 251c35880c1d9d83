// lwimport: the program's door. It finds the command and turns its outcome into the exit status.
#include <array>
#include <cstdio>
#include <exception>
#include <string>
#include <string_view>

#include "host/commands.h"
#include "host/failure.h"
#include "host/messages.h"

struct Command {
    std::string_view word;
    int (*run)(host::Arguments);
};

static constexpr std::array<Command, 1> commands = {{
    {"call", host::call_command},
}};

static int run(host::Arguments arguments)
{
    const std::string_view first = arguments.empty() ? "--help" : arguments.front();
    for (const Command& command : commands)
        if (first == command.word) return command.run(arguments.subspan(1));
    throw host::WrongUse("no such command: " + std::string(first));
}

int main(int argc, char** argv)
{
    try {
        return run(host::Arguments(argv, static_cast<std::size_t>(argc)).subspan(argc > 0 ? 1 : 0));
    } catch (const host::WrongUse& error) {
        host::say(host::Level::error, error.what());
        return host::status_wrong_use;
    } catch (const std::exception& error) {
        host::say(host::Level::error, error.what());
    }
    return host::status_failed;
}
