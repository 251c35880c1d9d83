// lwimport: the program's door. It finds the command and turns its outcome into the exit status.
#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <new>
#include <string>
#include <string_view>

#include "host/commands/commands.h"
#include "host/failure.h"
#include "host/say.h"
#include "lib/platform/atomic_file.h"
#include "lib/platform/console.h"
#include "lib/platform/memory.h"

struct Command {
    std::string_view word;
    int (*run)(host::Arguments);
    const char* summary;
};

static constexpr std::array<Command, 6> commands = {{
    {"convert", host::convert_command, "the default: to glTF 2.0"},
    {"info", host::info_command, "what is inside: objects, surfaces, textures, lights, camera, missing files"},
    {"find", host::find_command, "each file that a scene or object names, and where it is found"},
    {"check", host::check_command, "is it a Lightwave object or scene?"},
    {"call", host::call_command, "words straight to the plug-in's entry point"},
    {"options", host::options_command, "the plug-in's kept options"},
}};

static int help()
{
    std::fputs("lwimport turns Lightwave objects and scenes into glTF 2.0.\n\n", stdout);
    char convert_help[] = "--help";
    char* const arguments[] = {convert_help};
    const int status = host::convert_command(arguments);
    std::fputs("\nCommands (lwimport COMMAND --help tells more):\n", stdout);
    for (const Command& command : commands)
        std::printf("  %-10.*s%s\n", static_cast<int>(command.word.size()), command.word.data(), command.summary);
    std::fputs("\nExit status: 0 done, 1 something failed, 2 wrong use.\n", stdout);
    return status;
}

static int run(host::Arguments arguments)
{
    if (arguments.empty()) {
        help();
        return host::status_wrong_use;
    }
    const std::string_view first = arguments.front();
    if (first == "--help" || first == "-h" || first == "help") return help();
    if (first == "--version") {
        std::puts("lwimport " LWIMPORT_VERSION);
        return host::status_done;
    }
    const auto command =
        std::find_if(commands.begin(), commands.end(), [first](const Command& each) { return each.word == first; });
    return command == commands.end() ? host::convert_command(arguments) : command->run(arguments.subspan(1));
}

// The last way out where a library's destructor or the like finds no memory: an end in order all the same.
[[noreturn]] static void end_without_memory()
{
    bool short_of_memory = platform::memory_ran_short();
    try {
        if (const std::exception_ptr error = std::current_exception()) std::rethrow_exception(error);
    } catch (const std::bad_alloc&) {
        short_of_memory = true;
    } catch (...) {
    }
    if (!short_of_memory) std::abort();
    platform::AtomicFile::remove_unfinished();
    host::say_memory_short({});
    std::_Exit(host::status_failed);
}

int main(int argc, char** argv)
{
    platform::watch_memory();
    std::set_terminate(end_without_memory);
    platform::prepare_console();
    int status = host::status_failed;
    try {
        status = run(host::Arguments(argv, static_cast<std::size_t>(argc)).subspan(argc > 0 ? 1 : 0));
    } catch (const host::WrongUse& error) {
        host::say(host::message_of(error));
        status = host::status_wrong_use;
    } catch (const std::bad_alloc&) {
        host::say_memory_short({});
    } catch (const std::exception& error) {
        host::say(host::message_of(error));
    }
    if (status == host::status_done && platform::memory_ran_short()) {
        host::say_memory_short({});
        status = host::status_failed;
    }
    // Results that didn't get through are a failure, whatever the command thinks.
    if (std::fflush(stdout) != 0 || std::ferror(stdout)) {
        host::say(messages::message<"standard-output-failed">(""));
        if (status == host::status_done) status = host::status_failed;
    }
    return status;
}
