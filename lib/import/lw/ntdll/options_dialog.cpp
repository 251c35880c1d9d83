#include "lib/import/lw/ntdll/options_dialog.h"

#include "lib/import/lw/base/option_variables.h"
#include "lib/import/lw/base/report.h"
#include "lib/import/lw/lw2tv/options_file.h"
#include "lib/import/lw/ntdll/about_box.h"
#include "lib/import/lw/ntdll/directory_chooser.h"
#include "lib/import/lw/ntdll/library.h"
#include "lib/services/import_io.h"
#include "lib/toolkit/vc4_tv.h"

// In the order in which the boxes are set when the dialog opens.
static const lw_option_number option_boxes[] = {
    LW_IMPORT_KEYFRAME0_ONLY, LW_COMPUTE_NORMALS,           LW_PRINT_STATISTICS,          LW_PRINT_WARNINGS,
    LW_OUTPUT_DEBUG_INFO,     LW_EXPLODE_OBJ_BY_SURF_NAMES, LW_MAKE_SURFACE_NAMES_UNIQUE,
};

static const int angle_edit = lw_options[LW_SMOOTHING_ANGLE].control;
static const int directory_edit = lw_options[LW_NEWTEK_ROOT_DIRECTORY].control;

static const char split_warning[] =
    "By disabling this option you may find that the texture maps may not appear correctly on the imported Lightwace "
    "model(s).\n\nThis problem will only occur if an object references two or more materials, each of which uses its "
    "own texture projection method.\n\nRe-enable this option to prevent this problem from occurring.";

static void open_dialog(HWND dialog)
{
    Import_IO_Center_Window(parent_hwnd, dialog);
    if (lw_newtek_root_directory) SetDlgItemTextA(dialog, directory_edit, lw_newtek_root_directory);
    Import_IO_NdFloat_To_Dialog(dialog, angle_edit, lw_smoothing_angle);
    for (const lw_option_number box : option_boxes) {
        CheckDlgButton(dialog, lw_options[box].control, static_cast<UINT>(*lw_flag_variable(box)));
    }
}

static void accept(HWND dialog)
{
    if (!Import_IO_Check_Smoothing_Angle(dialog, angle_edit, &lw_smoothing_angle)) return;
    char path[lw_path_size];
    if (lw_options_file_path(path)) {
        SaveImportConvertOptions_Lightwave(path);
    } else {
        Tv_Report_Error(LW_ERROR, "OUTERR_FILE_OPEN_WRITE", "OptionsDlgProc()", "Lightwave .INI", path,
                        static_cast<const char*>(nullptr));
    }
    EndDialog(dialog, 1);
}

static bool flip_box(HWND dialog, int control)
{
    for (const lw_option_number box : option_boxes) {
        if (lw_options[box].control != control) continue;
        int16_t* const flag = lw_flag_variable(box);
        *flag = *flag == 0;
        CheckDlgButton(dialog, control, static_cast<UINT>(*flag));
        if (box == LW_EXPLODE_OBJ_BY_SURF_NAMES && !*flag) MessageBoxA(dialog, split_warning, "Warning", 0);
        return true;
    }
    return false;
}

INT_PTR CALLBACK OptionsDlgProc(HWND dialog, UINT message, WPARAM first, LPARAM)
{
    if (message == WM_INITDIALOG) {
        open_dialog(dialog);
        return 1;
    }
    if (message != WM_COMMAND) return 0;
    const int control = LOWORD(first);
    switch (control) {
    case 1: accept(dialog); return 1;
    case 2: EndDialog(dialog, 0); return 1;
    case 109: lw_choose_directory(dialog); return 1;
    case 200: lw_show_help(dialog); return 1;
    case 201: lw_show_about_dialog(); return 1;
    default: return flip_box(dialog, control) ? 1 : 0;
    }
}

int32_t lw_show_options_dialog()
{
    return static_cast<int32_t>(DialogBoxParamA(static_cast<HINSTANCE>(hDLLinstance), "OptionsDialog",
                                                static_cast<HWND>(parent_hwnd), OptionsDlgProc, 0));
}
