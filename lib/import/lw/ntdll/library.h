// The library itself: attach and detach.
#pragma once

extern void* hDLLinstance; // module handle, set when the library is attached to the process
