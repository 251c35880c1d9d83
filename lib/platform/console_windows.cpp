#include "lib/platform/console.h"

#include <cstdlib>
#include <fcntl.h>
#include <io.h>

#include "lib/platform/dialogs/dialogs.h"

namespace platform {

static UINT code_page_before = 0;

static HANDLE handle_of(std::FILE* stream)
{
    return reinterpret_cast<HANDLE>(_get_osfhandle(_fileno(stream)));
}

void prepare_console()
{
    _setmode(_fileno(stdout), _O_BINARY);
    _setmode(_fileno(stderr), _O_BINARY);
    code_page_before = GetConsoleOutputCP();
    if (code_page_before != 0 && code_page_before != CP_UTF8 && SetConsoleOutputCP(CP_UTF8)) {
        std::atexit([] { SetConsoleOutputCP(code_page_before); }); // it is the console's, which outlives us
    }
    DWORD mode = 0;
    if (GetConsoleMode(handle_of(stderr), &mode))
        SetConsoleMode(handle_of(stderr), mode | ENABLE_VIRTUAL_TERMINAL_PROCESSING);
}

bool is_terminal(std::FILE* stream)
{
    DWORD mode = 0; // _isatty() says yes to NUL and printers too
    return GetConsoleMode(handle_of(stream), &mode) != 0;
}

std::size_t terminal_columns(std::FILE* stream)
{
    CONSOLE_SCREEN_BUFFER_INFO info = {};
    if (!GetConsoleScreenBufferInfo(handle_of(stream), &info)) return 0;
    const int columns = info.srWindow.Right - info.srWindow.Left + 1;
    return columns > 0 ? static_cast<std::size_t>(columns) : 0;
}

static void (*interrupt_action)() = nullptr;

void on_interrupt(void (*action)())
{
    interrupt_action = action;
    // Calls on a thread of its own. A console that is closed waits for it five seconds.
    SetConsoleCtrlHandler(
        [](DWORD) -> BOOL {
            interrupt_action();
            return TRUE;
        },
        TRUE);
}

} // namespace platform
