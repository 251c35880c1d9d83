// The library itself: what it keeps from attach to detach. The system calls these two by its own ways: dll_main, or
// shared_object.
#pragma once
#include "lib/import/lw/base/bounded_text.h"

extern void* hDLLinstance;     // module handle, set when the library is attached to the process
extern void* parent_hwnd;      // owner of all dialogs; null until the host sends it
extern char* plugin_directory; // owned; a plain prefix that ends in a separator. Null until "initialize"

// The path of the options file. False where it is too long: a cut one would be another file's.
bool lw_options_file_path(char path[lw_path_size]);

void lw_attach_library(void* module);
void lw_detach_library();
