#include "lib/services/center_window.h"

#include <algorithm>

namespace {

LONG centred(LONG low, LONG high, LONG size)
{
    return low + (high - low - size) / 2;
}

// A dialog that doesn't fit keeps its title bar on the screen.
LONG kept_inside(LONG at, LONG low, LONG high, LONG size)
{
    return std::max(low, std::min(at, high - size));
}

} // namespace

void services::center_window(HWND parent, HWND dialog)
{
    RECT screen = {}, own = {}, over = {};
    if (!dialog || !GetWindowRect(dialog, &own)) return;
    MONITORINFO monitor = {};
    monitor.cbSize = sizeof monitor;
    if (GetMonitorInfoA(MonitorFromWindow(parent ? parent : dialog, MONITOR_DEFAULTTONEAREST), &monitor)) {
        screen = monitor.rcWork;
    } else if (!SystemParametersInfoA(SPI_GETWORKAREA, 0, &screen, 0)) {
        return;
    }
    if (!parent || IsIconic(parent) || !GetWindowRect(parent, &over)) over = screen;
    const LONG width = own.right - own.left, height = own.bottom - own.top;
    const LONG x = kept_inside(centred(over.left, over.right, width), screen.left, screen.right, width);
    const LONG y = kept_inside(centred(over.top, over.bottom, height), screen.top, screen.bottom, height);
    SetWindowPos(dialog, nullptr, static_cast<int>(x), static_cast<int>(y), 0, 0,
                 SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
}
