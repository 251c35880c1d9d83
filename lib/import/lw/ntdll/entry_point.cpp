// The walk over the host's commands.
#include "lib/import/implugin.h"

#include <cstring>

#include "lib/import/lw/base/option_variables.h"
#include "lib/import/lw/lw2tv/conversion_run.h"
#include "lib/import/lw/lw2tv/options_file.h"
#include "lib/import/lw/ntdll/about_box.h"
#include "lib/import/lw/ntdll/library.h"
#include "lib/import/lw/ntdll/options_dialog.h"
#include "lib/platform/files.h"
#include "lib/services/import_io.h"

static void initialize(const char* directory)
{
    Import_IO_Copy_String(&plugin_directory, directory ? directory : "");
    lw_init_import_variables();
    char path[lw_path_size];
    if (lw_options_file_path(path)) RestoreImportConvertOptions_Lightwave(path);
}

void Tavrin_Plugin_EntryPoint(char** names, void** values, int32_t* result, void* reserved)
{
    *result = 0;
    if (!names) return;
    platform::forget_directories(); // files may have come since the last call
    for (; *names && **names; ++names, values = values ? values + 1 : nullptr) {
        const char* const command = *names;
        void* const value = values ? *values : nullptr;
        if (std::strcmp(command, "parent_hWnd") == 0) {
            parent_hwnd = value;
        } else if (std::strcmp(command, "initialize") == 0) {
            initialize(static_cast<const char*>(value));
        } else if (std::strcmp(command, "validate_header") == 0) {
            *result = lw_auto_detect_filetype(static_cast<const char*>(value));
        } else if (std::strcmp(command, "show_options_dialog") == 0) {
            *result = lw_show_options_dialog();
        } else if (std::strcmp(command, "show_about_dialog") == 0) {
            lw_show_about_dialog();
        } else if (std::strcmp(command, "execute_geometry_converter") == 0) {
            ImportConverter_Lightwave(names + 1, values ? values + 1 : nullptr, result, reserved);
            return;
        }
        // "parent_hInstance", "shutdown", "new_instance", "destroy_instance", and whatever nobody knows: nothing to do.
    }
}
