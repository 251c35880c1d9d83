#include "bench/processes.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <fstream>
#include <spawn.h>
#include <stdexcept>
#include <sys/wait.h>
#include <unistd.h>

extern char** environ;

namespace bench {

namespace {

pid_t start(const std::vector<std::string>& command, const std::string& preload, int output)
{
    std::vector<char*> arguments, environment;
    for (const std::string& argument : command) arguments.push_back(const_cast<char*>(argument.c_str()));
    arguments.push_back(nullptr);
    const std::string variable = "LD_PRELOAD=" + preload;
    for (char** entry = environ; *entry; ++entry) environment.push_back(*entry);
    if (!preload.empty()) environment.push_back(const_cast<char*>(variable.c_str()));
    environment.push_back(nullptr);

    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    if (output < 0) {
        posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    } else {
        posix_spawn_file_actions_adddup2(&actions, output, STDOUT_FILENO);
    }
    pid_t child = 0;
    const int error = posix_spawn(&child, arguments[0], &actions, nullptr, arguments.data(), environment.data());
    posix_spawn_file_actions_destroy(&actions);
    if (error != 0) throw std::runtime_error("can't start " + command[0] + ": " + std::strerror(error));
    return child;
}

void wait_for(pid_t child, const std::string& name)
{
    int status = 0;
    if (waitpid(child, &status, 0) != child || !WIFEXITED(status) || WEXITSTATUS(status) != 0) {
        throw std::runtime_error(name + " failed");
    }
}

} // namespace

double process_seconds(const std::vector<std::string>& command, const std::string& preload)
{
    const auto before = std::chrono::steady_clock::now();
    wait_for(start(command, preload, -1), command[0]);
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - before).count();
}

double printed_number(const std::vector<std::string>& command)
{
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0) throw std::runtime_error("no pipe");
    const pid_t child = start(command, "", ends[1]);
    close(ends[1]);
    char text[64] = "";
    const ssize_t size = read(ends[0], text, sizeof text - 1);
    close(ends[0]);
    wait_for(child, command[0]);
    return size > 0 ? std::strtod(text, nullptr) : 0;
}

std::string shared_libraries(const std::string& program)
{
    std::string out;
    std::FILE* const listing = popen(("LD_TRACE_LOADED_OBJECTS=1 '" + program + "'").c_str(), "r");
    if (!listing) return out;
    char line[4096], path[4096];
    while (std::fgets(line, sizeof line, listing)) {
        const char* const arrow = std::strstr(line, "=> ");
        if (arrow && std::sscanf(arrow, "=> %4095s", path) == 1 && path[0] == '/')
            out += (out.empty() ? "" : ":") + std::string(path);
    }
    pclose(listing);
    return out;
}

double peak_bytes()
{
    // Not getrusage: that one keeps the peak of the process that started this one.
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);) {
        if (line.starts_with("VmHWM:")) return std::strtod(line.c_str() + 6, nullptr) * 1024;
    }
    return 0;
}

} // namespace bench
