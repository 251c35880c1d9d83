// The file-save dialog in its old style, as far as a directory chooser with a template and a hook uses it: the path in
// 1088, directories in 1121, drives in 1137, the file's name in 1152. As there, choosing changes the process's directory.
#include <unistd.h>

#include <algorithm>
#include <string>

#include "lib/platform/dialog_window.h"

namespace {

const int path_edit = 1088, directory_list = 1121, drive_list = 1137, file_name_edit = 1152;

std::string current_directory()
{
    char text[4096];
    return getcwd(text, sizeof text) ? text : "/";
}

void fill(Platform_Window& window)
{
    const std::string here = current_directory();
    if (Platform_Window::Control* const path = window.find(path_edit)) path->text = here;
    if (Platform_Window::Control* const list = window.find(directory_list)) {
        list->items.clear();
        if (here != "/") list->items.push_back("..");
        platform::forget_directories();
        for (const std::string& name : platform::list_directory(here)) {
            if (name.empty() || name[0] == '.') continue;
            if (platform::is_directory((here == "/" ? "" : here) + "/" + name)) list->items.push_back(name);
        }
    }
    if (Platform_Window::Control* const drives = window.find(drive_list)) drives->items = {"/"};
}

} // namespace

BOOL GetSaveFileNameA(OPENFILENAMEA* record)
{
    if (!record) return FALSE;
    const std::unique_ptr<Platform_Window> window = platform::make_window(record->lpTemplateName);
    platform::DialogFace* const face = window ? platform::dialog_face() : nullptr;
    if (!face) return FALSE;
    if (record->lpstrTitle) window->title = record->lpstrTitle;
    if (record->lpstrInitialDir) {
        const std::string start = platform::resolve(record->lpstrInitialDir);
        if (!start.empty() && chdir(start.c_str()) != 0) window->title += " (the stored directory can't be opened)";
    }

    const auto hook = [&](UINT message, WPARAM first, LPARAM second) -> UINT_PTR {
        return record->lpfnHook ? record->lpfnHook(window.get(), message, first, second) : 0;
    };
    window->procedure = [&](UINT message, WPARAM first, LPARAM second) -> INT_PTR {
        if (hook(message, first, second) != 0 || message != WM_COMMAND) return 1;
        const int id = LOWORD(first);
        // The system's dialog closes by OK only with a file's name in it.
        if (id == IDOK && window->find(file_name_edit) && !window->find(file_name_edit)->text.empty()) {
            EndDialog(window.get(), 1);
        }
        if (id == IDCANCEL) EndDialog(window.get(), 0);
        return 1;
    };
    window->on_select = [&](int control, std::size_t item) {
        const Platform_Window::Control* const list = window->find(control);
        if (!list || item >= list->items.size() || (control != directory_list && control != drive_list)) return;
        if (chdir(list->items[item].c_str()) != 0) return;
        fill(*window);
        hook(RegisterWindowMessageA("commdlg_LBSelChangedNotify"), static_cast<WPARAM>(control), 0);
    };
    fill(*window);
    hook(WM_INITDIALOG, 0, reinterpret_cast<LPARAM>(record));
    face->run(*window);
    return window->result != 0;
}
