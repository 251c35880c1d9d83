#include "lib/import/lw/ntdll/library.h"

#include "lib/import/lw/base/option_variables.h"
#include "lib/toolkit/vc4_tv.h"

void* hDLLinstance = nullptr;
void* parent_hwnd = nullptr;
char* plugin_directory = nullptr;

bool lw_options_file_path(char path[lw_path_size])
{
    const char* const directory = plugin_directory ? plugin_directory : "";
    return lw_format_text(path, lw_path_size, "%s%s", directory, lw_options_file_name) < lw_path_size;
}

void lw_attach_library(void* module)
{
    hDLLinstance = module;
}

void lw_detach_library()
{
    lw_release_import_variables();
    Tv_Free_Memory(plugin_directory);
    plugin_directory = nullptr;
}
