// The walk over the host's commands.
#pragma once
#include "lib/import/implugin.h"

extern void* parent_hwnd;      // owner of all dialogs; null until the host sends it
extern char* plugin_directory; // owned; a plain prefix that ends in a separator. Null until "initialize"
