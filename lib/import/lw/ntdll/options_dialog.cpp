#include "lib/import/lw/ntdll/options_dialog.h"

#include "lib/import/lw/base/bounded_text.h"
#include "lib/import/lw/base/option_variables.h"
#include "lib/import/lw/lw2tv/options_file.h"
#include "lib/import/lw/ntdll/about_box.h"
#include "lib/import/lw/ntdll/directory_chooser.h"
#include "lib/import/lw/ntdll/entry_point.h"
#include "lib/import/lw/ntdll/library.h"
#include "lib/services/import_io.h"
#include "lib/toolkit/vc4_tv.h"

struct lw_option_box {
    int control;
    int16_t* option;
};

// In the order in which the boxes are set when the dialog opens.
static const lw_option_box option_boxes[] = {
    {110, &lw_import_keyframe0_only}, {100, &lw_compute_normals},   {101, &lw_print_statistics_var},
    {102, &lw_print_warnings},        {105, &lw_output_debug_info}, {106, &lw_explode_obj_by_surf_name},
    {107, &lw_make_surfnames_unique},
};

static const int split_box = 106, angle_edit = 103, directory_edit = 108;

static const char split_warning[] =
    "By disabling this option you may find that the texture maps may not appear correctly on the imported Lightwace "
    "model(s).\n\nThis problem will only occur if an object references two or more materials, each of which uses its "
    "own texture projection method.\n\nRe-enable this option to prevent this problem from occurring.";

static void open_dialog(HWND dialog)
{
    Import_IO_Center_Window(parent_hwnd, dialog);
    if (lw_newtek_root_directory) SetDlgItemTextA(dialog, directory_edit, lw_newtek_root_directory);
    Import_IO_NdFloat_To_Dialog(dialog, angle_edit, lw_smoothing_angle);
    for (const lw_option_box& box : option_boxes) CheckDlgButton(dialog, box.control, static_cast<UINT>(*box.option));
}

static void accept(HWND dialog)
{
    if (!Import_IO_Check_Smoothing_Angle(dialog, angle_edit, &lw_smoothing_angle)) return;
    char path[300];
    const size_t length = lw_format_text(path, sizeof path, "%simp_lw.ini", plugin_directory ? plugin_directory : "");
    if (length < sizeof path) {
        SaveImportConvertOptions_Lightwave(path);
    } else { // a cut path would be another file's
        Tv_Report_Error(4, "OUTERR_FILE_OPEN_WRITE", "OptionsDlgProc()", "Lightwave .INI", path,
                        static_cast<const char*>(nullptr));
    }
    EndDialog(dialog, 1);
}

static bool flip_box(HWND dialog, int control)
{
    for (const lw_option_box& box : option_boxes) {
        if (box.control != control) continue;
        *box.option = *box.option == 0;
        CheckDlgButton(dialog, control, static_cast<UINT>(*box.option));
        if (control == split_box && !*box.option) MessageBoxA(dialog, split_warning, "Warning", 0);
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
