#include "host/say.h"

#include <cstdlib>
#include <cstring>

#include "lib/platform/console.h"
#include "lib/platform/latin1.h"

namespace host {

static bool quiet = false;
static bool progress_shown = false;

static bool terminal()
{
    static const bool is_terminal = platform::is_terminal(stderr);
    return is_terminal;
}

static bool uses_color()
{
    static const bool color = [] {
        const char* const no_color = std::getenv("NO_COLOR");
        const char* const kind = std::getenv("TERM");
        return terminal() && !(no_color && *no_color) && kind && std::strcmp(kind, "dumb") != 0;
    }();
    return color;
}

static std::string without_controls(std::string_view text)
{
    std::string clean(text);
    for (char& c : clean) {
        const auto byte = static_cast<unsigned char>(c);
        if ((byte < 0x20 && c != '\n' && c != '\t') || byte == 0x7f) c = '?';
    }
    return clean;
}

static void put(const std::string& text)
{
    show_progress_line({});
    std::fwrite(text.data(), 1, text.size(), stderr);
}

void say(const messages::Message& message)
{
    const messages::Level level = message.row->level;
    if (level <= messages::Level::info && quiet) return;
    const std::string line = messages::line(message);
    std::string_view text = line;
    while (!text.empty() && (text.back() == '\n' || text.back() == '\r')) text.remove_suffix(1);
    std::string head;
    if (level > messages::Level::info) {
        const bool error = level == messages::Level::error;
        const char* const word = error ? "error: " : "warning: ";
        head = uses_color() ? std::string(error ? "\033[1;31m" : "\033[1;33m") + word + "\033[0m" : word;
    }
    put(head + without_controls(text) + "\n");
}

void print_latin1(std::string_view text)
{
    put(without_controls(platform::latin1_to_utf8(text)));
}

void set_quiet(bool now)
{
    quiet = now;
}

// A line that the terminal would wrap couldn't be taken away again.
static std::string cut_to_terminal(const std::string& line)
{
    const std::size_t width = platform::terminal_columns(stderr);
    std::size_t columns = width > 1 ? width - 1 : 79;
    std::size_t end = 0;
    for (; end < line.size(); ++end)
        if ((static_cast<unsigned char>(line[end]) & 0xc0) != 0x80 && columns-- == 0) break; // a character begins
    return line.substr(0, end);
}

void show_progress_line(const std::string& line)
{
    if (!terminal() || (line.empty() && !progress_shown)) return;
    std::fputs("\r\033[K", stderr);
    const std::string shown = without_controls(cut_to_terminal(line));
    std::fwrite(shown.data(), 1, shown.size(), stderr);
    std::fflush(stderr);
    progress_shown = !line.empty();
}

} // namespace host
