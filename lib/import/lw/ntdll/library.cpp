#include "lib/import/lw/ntdll/library.h"

#include "lib/import/lw/base/option_variables.h"
#include "lib/import/lw/ntdll/entry_point.h"
#include "lib/toolkit/vc4_tv.h"

void* hDLLinstance = nullptr;

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
