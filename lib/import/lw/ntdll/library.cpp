#include "lib/import/lw/ntdll/library.h"

#include "lib/import/lw/ntdll/entry_point.h"
#include "lib/import/lw/ntdll/option_variables.h"
#include "lib/toolkit/vc4_tv.h"

void* hDLLinstance = nullptr;

#if defined(_WIN32)
#define LW_STDCALL __stdcall
#else
#define LW_STDCALL
#endif

// The reasons as Windows counts them.
static const unsigned long reason_process_detach = 0;
static const unsigned long reason_process_attach = 1;

extern "C" int LW_STDCALL DllMain(void* module, unsigned long reason, void*)
{
    if (reason == reason_process_attach) hDLLinstance = module;
    if (reason == reason_process_detach) {
        lw_release_import_variables();
        Tv_Free_Memory(plugin_directory);
        plugin_directory = nullptr;
    }
    return 1;
}

#if !defined(_WIN32)
void lw_add_dialog_templates(); // made from imp_lw.rc by the build

__attribute__((constructor)) static void attach()
{
    lw_add_dialog_templates();
    DllMain(nullptr, reason_process_attach, nullptr);
}

__attribute__((destructor)) static void detach()
{
    DllMain(nullptr, reason_process_detach, nullptr);
}
#endif
