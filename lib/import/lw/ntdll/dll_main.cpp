// Attach and detach on Windows.
#include "lib/import/lw/ntdll/library.h"
#include "lib/platform/dialogs/dialogs.h"

extern "C" BOOL WINAPI DllMain(HINSTANCE module, DWORD reason, LPVOID)
{
    if (reason == DLL_PROCESS_ATTACH) lw_attach_library(module);
    if (reason == DLL_PROCESS_DETACH) lw_detach_library();
    return TRUE;
}
