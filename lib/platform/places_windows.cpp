#include "lib/platform/places.h"

#include <cstdlib>

#include "lib/platform/text.h"
#include "lib/platform/wide.h"

namespace platform {
namespace {

std::string module_file(HMODULE module)
{
    std::wstring path(512, L'\0');
    while (true) {
        const DWORD length = GetModuleFileNameW(module, path.data(), static_cast<DWORD>(path.size()));
        if (length == 0 || path.size() > 65536) return {};
        if (length < path.size()) return narrow(path.substr(0, length));
        path.resize(path.size() * 2); // it was cut
    }
}

} // namespace

std::string program_file()
{
    return module_file(nullptr);
}

std::string library_file(const void* address)
{
    HMODULE module = nullptr;
    const DWORD how = GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT;
    return GetModuleHandleExW(how, static_cast<LPCWSTR>(address), &module) ? module_file(module) : std::string();
}

// The program's own: Windows looks there first for what a library needs.
std::string library_directory()
{
    std::string program = program_file();
    program.resize(program.size() - last_element(program).size());
    return program;
}

std::string library_name(const std::string& name)
{
    return name + ".dll";
}

std::string settings_directory()
{
    const wchar_t* const settings = _wgetenv(L"APPDATA");
    return settings ? narrow(settings) : std::string();
}

const char* settings_problem()
{
    return "APPDATA names no directory";
}

} // namespace platform
