#include "lib/platform/library.h"

#include <dlfcn.h>

namespace platform {

void* load_library(const std::string& path, std::string& problem)
{
    void* const library = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (library) return library;
    const char* const why = dlerror();
    problem = why ? why : path;
    return nullptr;
}

void* library_symbol(void* library, const char* name)
{
    return dlsym(library, name);
}

} // namespace platform
