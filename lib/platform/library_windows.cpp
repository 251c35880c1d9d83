#include "lib/platform/library.h"

#include "lib/platform/wide.h"

namespace platform {

void* load_library(const std::string& path, std::string& problem)
{
    HMODULE const library = LoadLibraryW(wide(path).c_str());
    if (!library) problem = path + ": " + error_text(GetLastError());
    return library;
}

void* library_symbol(void* library, const char* name)
{
    return reinterpret_cast<void*>(GetProcAddress(static_cast<HMODULE>(library), name));
}

} // namespace platform
