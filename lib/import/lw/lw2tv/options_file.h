// The option variables as a text file, imp_lw.ini in the plug-in's directory. `path` is made local in place.
#pragma once
#include <cstdint>

// 0 when the file could be opened, else 1 and no message: what the file doesn't say stays as it is.
int16_t RestoreImportConvertOptions_Lightwave(char* path);

// 0 when written; 1, with a report, when the file can't be made.
int16_t SaveImportConvertOptions_Lightwave(char* path);
