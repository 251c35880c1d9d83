// Sees open dialogs from outside, as a person at the screen does: which are there, what their controls show, and where
// on the screen they stand. It never clicks: that is left to a real pointer.
//
//   dialog_probe windows                    titles of all visible windows at the top, one a line
//   dialog_probe controls TITLE             id, kind, centre x, centre y, checked, text: a control a line, tabs between
//   dialog_probe item TITLE ID TEXT         centre x and y of a list's item
//   dialog_probe frame TITLE                left, top, right and bottom of the window itself
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "lib/platform/dialogs/dialogs.h"

static void print_control(HWND control)
{
    char kind[64] = "", text[4096] = "";
    RECT place = {};
    GetClassNameA(control, kind, sizeof kind);
    SendMessageA(control, WM_GETTEXT, sizeof text, reinterpret_cast<LPARAM>(text));
    GetWindowRect(control, &place);
    for (char* c = text; *c; ++c)
        if (*c == '\n' || *c == '\r' || *c == '\t') *c = ' ';
    const bool box = std::strcmp(kind, "Button") == 0;
    std::printf("%d\t%s\t%ld\t%ld\t%d\t%s\n", GetDlgCtrlID(control), kind, (place.left + place.right) / 2,
                (place.top + place.bottom) / 2, box ? static_cast<int>(SendMessageA(control, BM_GETCHECK, 0, 0)) : 0,
                text);
}

static int print_item(HWND list, const char* text)
{
    const LRESULT item =
        SendMessageA(list, LB_FINDSTRINGEXACT, static_cast<WPARAM>(-1), reinterpret_cast<LPARAM>(text));
    RECT place = {};
    if (item == LB_ERR ||
        SendMessageA(list, LB_GETITEMRECT, static_cast<WPARAM>(item), reinterpret_cast<LPARAM>(&place)) == LB_ERR)
        return 1;
    POINT centre = {(place.left + place.right) / 2, (place.top + place.bottom) / 2};
    ClientToScreen(list, &centre);
    std::printf("%ld\t%ld\n", centre.x, centre.y);
    return 0;
}

int main(int argc, char** argv)
{
    if (argc == 2 && std::strcmp(argv[1], "windows") == 0) {
        EnumWindows(
            [](HWND window, LPARAM) -> BOOL {
                char title[256] = "";
                if (IsWindowVisible(window) && GetWindowTextA(window, title, sizeof title) > 0) std::puts(title);
                return TRUE;
            },
            0);
        return 0;
    }
    if (argc < 3) return 2;
    HWND const dialog = FindWindowA(nullptr, argv[2]);
    if (!dialog) return 1;
    if (std::strcmp(argv[1], "controls") == 0) {
        EnumChildWindows(
            dialog,
            [](HWND control, LPARAM) -> BOOL {
                print_control(control);
                return TRUE;
            },
            0);
        return 0;
    }
    if (std::strcmp(argv[1], "item") == 0 && argc == 5) {
        HWND const list = GetDlgItem(dialog, std::atoi(argv[3]));
        return list ? print_item(list, argv[4]) : 1;
    }
    if (std::strcmp(argv[1], "frame") == 0) {
        RECT place = {};
        GetWindowRect(dialog, &place);
        std::printf("%ld\t%ld\t%ld\t%ld\n", place.left, place.top, place.right, place.bottom);
        return 0;
    }
    return 2;
}
