// Attach and detach elsewhere than on Windows: when the library is loaded, and when it is left.
#include "lib/import/lw/ntdll/library.h"

void lw_add_dialog_templates(); // made from imp_lw.rc by the build

__attribute__((constructor)) static void attach()
{
    lw_add_dialog_templates();
    lw_attach_library(nullptr);
}

__attribute__((destructor)) static void detach()
{
    lw_detach_library();
}
