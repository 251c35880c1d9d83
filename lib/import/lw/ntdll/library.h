// The library itself: attach and detach. The system calls them by its own ways: dll_main, or shared_object.
#pragma once

extern void* hDLLinstance; // module handle, set when the library is attached to the process

void lw_attach_library(void* module);
void lw_detach_library();
