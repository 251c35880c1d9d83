#include "lib/platform/console.h"

#include <csignal>
#include <sys/ioctl.h>
#include <unistd.h>

namespace platform {

void prepare_console() {}

bool is_terminal(std::FILE* stream)
{
    return isatty(fileno(stream)) == 1;
}

std::size_t terminal_columns(std::FILE* stream)
{
    struct winsize size = {};
    return ioctl(fileno(stream), TIOCGWINSZ, &size) == 0 ? size.ws_col : 0;
}

static void (*interrupt_action)() = nullptr;

static void on_signal(int)
{
    interrupt_action();
}

void on_interrupt(void (*action)())
{
    interrupt_action = action;
    struct sigaction ours = {};
    ours.sa_handler = on_signal;
    for (const int signal : {SIGINT, SIGTERM}) {
        struct sigaction before = {};
        if (sigaction(signal, nullptr, &before) == 0 && before.sa_handler != SIG_IGN) sigaction(signal, &ours, nullptr);
    }
}

} // namespace platform
