#include "lib/platform/places.h"

#include <cstdlib>
#include <dlfcn.h>
#include <filesystem>
#include <system_error>

namespace platform {

std::string program_file()
{
    std::error_code error;
    return std::filesystem::read_symlink("/proc/self/exe", error).string();
}

std::string library_file(const void* address)
{
    Dl_info info = {};
    return dladdr(address, &info) && info.dli_fname ? info.dli_fname : "";
}

// bin/ holds the program, lib/ beside it the libraries.
std::string library_directory()
{
    const std::filesystem::path program = program_file();
    return program.empty() ? std::string() : (program.parent_path().parent_path() / "lib").string();
}

std::string library_name(const std::string& name)
{
    return name + ".so";
}

std::string settings_directory()
{
    const char* const settings = std::getenv("XDG_CONFIG_HOME");
    const char* const home = std::getenv("HOME");
    if (settings && *settings == '/') return settings;
    return home && *home == '/' ? std::string(home) + "/.config" : std::string();
}

const char* settings_problem()
{
    return "neither XDG_CONFIG_HOME nor HOME is a usable directory";
}

} // namespace platform
