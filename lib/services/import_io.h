/* import_io: what import plug-ins share: the frame of a run, messages, unique names, progress and abort, channels.
 *
 * Levels of a report: 3 warning, the run goes on; 4 error, the run goes on and the caller leaves out what failed;
 * 5 fatal, the run's handler leaves by its non-local exit, so a level 5 report doesn't return. No frame of the
 * services that such an exit crosses holds anything with a destructor.
 *
 * Names that the services write hold at most 255 bytes and their end: outputs are buffers of 256.
 */
#ifndef LIB_SERVICES_IMPORT_IO_H
#define LIB_SERVICES_IMPORT_IO_H

#include <stdint.h>

#if defined(_WIN32)
#if defined(IMPORT_IO_BUILD)
#define IMPORT_IO_API __declspec(dllexport)
#else
#define IMPORT_IO_API __declspec(dllimport)
#endif
#else
#define IMPORT_IO_API __attribute__((visibility("default")))
#endif

#if defined(__GNUC__) && !defined(_WIN32)
#define IMPORT_IO_PRINTF(a, b) __attribute__((format(printf, a, b)))
#else
#define IMPORT_IO_PRINTF(a, b)
#endif

#ifdef __cplusplus
extern "C" {
#endif

typedef struct Import_IO_Error_Record {
    int32_t level;
    int32_t unused;
    const char* message; /* the services' own, valid during the handler's call */
} Import_IO_Error_Record;

typedef void (*Import_IO_Error_Handler)(Import_IO_Error_Record* record);

/* What a reader shows of its progress. */
typedef struct Import_IO_Abort_Record {
    int16_t size;     /* 20 */
    int32_t position; /* bytes, of the file being read */
    int32_t total;
    int32_t objects; /* so far, of the run */
    int32_t polygons;
} Import_IO_Abort_Record;

/* The frame of a run. The handler gets a record for each report between Initialize and Cleanup. */
IMPORT_IO_API void Import_IO_Initialize(const char* file_name, Import_IO_Error_Handler handler);
IMPORT_IO_API void Import_IO_Cleanup(void);
IMPORT_IO_API void Import_IO_Abort_Cleanup(void);

/* Messages and progress. */
IMPORT_IO_API void Import_IO_Report_Error(int32_t level, const char* text);
IMPORT_IO_API void Import_IO_printf(const char* format, ...) IMPORT_IO_PRINTF(1, 2);
IMPORT_IO_API void Import_IO_Display_Info_Text(const char* text);
IMPORT_IO_API int32_t Import_IO_Check_For_Abort(Import_IO_Abort_Record* record); /* not 0: the user wants to stop */

/* Strings. Copy_String releases the string that stands at *address (null, or one of its own making) and stores an
 * owned copy of text, to go back by Tv_Free_Memory; without memory it stores null. */
IMPORT_IO_API void Import_IO_Copy_String(char** address, const char* text);
IMPORT_IO_API int16_t Import_IO_Strip_Whitespace(char* text);                   /* in place; 0 when nothing is left */
IMPORT_IO_API void Import_IO_String_To_Lower(const char* in, char* out);        /* ASCII letters alone; out may be in */
IMPORT_IO_API void Import_IO_ExtractBaseFileName(const char* path, char* base); /* without its last extension */

/* Names, each unique in its kind (the token of "object", "instance", "surface", "texture", "light" or "camera"). */
IMPORT_IO_API void Import_IO_MakeNameUnique(int32_t kind, const char* name, char* out); /* out may be name */
IMPORT_IO_API void Import_IO_MakeAndSaveUniqueName(int32_t kind, const char* name, char* out);
IMPORT_IO_API void Import_IO_SaveHandleName(int32_t kind, const char* name);
IMPORT_IO_API const char* Import_IO_TranslateName(int32_t kind, const char* name); /* null, or the host's word for it */

/* The tree. `kind` and `parent` say below what the new instance of `object` hangs. */
IMPORT_IO_API void Import_IO_Attach_Object_To_World(const char* name, const char* object, char* instance_out,
                                                    int32_t kind, const char* parent);
IMPORT_IO_API void Import_IO_Set_Root_Imported_Instance_Name(const char* name);

/* Animation channels. Tables of 20 (instance) and 16 (camera) slots; a slot that the thing hasn't is null. 0: no such
 * thing, and the table holds nulls. */
IMPORT_IO_API int16_t Import_IO_Get_DefaultAnimationChannelPtrs(const char* instance, void** table);
IMPORT_IO_API void Import_IO_OptimizeTransformationChannels(const char* instance);
IMPORT_IO_API int16_t Import_IO_Get_DefaultCameraAnimationChannelPtrs(const char* camera, void** table);
IMPORT_IO_API void Import_IO_OptimizeCameraTransformationChannels(const char* camera);

/* Dialogs: window handles are the platform's. */
IMPORT_IO_API void Import_IO_Center_Window(void* parent, void* dialog);
IMPORT_IO_API void Import_IO_NdFloat_To_Dialog(void* dialog, int32_t control, float value);
IMPORT_IO_API int32_t Import_IO_Check_Smoothing_Angle(void* dialog, int32_t control, float* angle); /* 0: refused */
IMPORT_IO_API void Import_IO_DisplayHelpTopic(void* dialog, const char* directory, const char* file, const char* topic);

#ifdef __cplusplus
}
#endif

#endif
