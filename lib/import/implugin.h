/* The one function that an import plug-in exports.
 *
 * names and values are parallel lists of pointer-sized entries: entry i of names is a command or an option word, entry
 * i of values its value, a string (writable: some are changed in place) or an integer in the slot. The lists end at a
 * null in names. *result is always written; what stands in it is told by the last command that writes one.
 */
#ifndef LIB_IMPORT_IMPLUGIN_H
#define LIB_IMPORT_IMPLUGIN_H

#include <stdint.h>

#if defined(_WIN32)
#define IMPLUGIN_EXPORT __declspec(dllexport)
#else
#define IMPLUGIN_EXPORT __attribute__((visibility("default")))
#endif

#ifdef __cplusplus
extern "C" {
#endif

IMPLUGIN_EXPORT void Tavrin_Plugin_EntryPoint(char** names, void** values, int32_t* result, void* reserved);

typedef void (*Tavrin_Plugin_EntryPoint_Function)(char** names, void** values, int32_t* result, void* reserved);

#ifdef __cplusplus
}
#endif

#endif
