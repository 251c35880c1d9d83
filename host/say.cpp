#include "host/say.h"

#include <cstdlib>
#include <cstring>

#include "lib/platform/console.h"
#include "lib/platform/latin1.h"
#include "lib/platform/memory.h"

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

static bool memory_short_told = false;

void forget_memory_short()
{
    memory_short_told = false;
    platform::forget_short_memory();
}

static void put_message(const messages::Message& message)
{
    const messages::Level level = message.row->level;
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

void say_memory_short(std::string_view file) noexcept
{
    platform::note_short_memory();
    if (memory_short_told) return;
    memory_short_told = true;
    const auto told = [file] { put_message(about(std::string(file), messages::message<"memory-short">())); };
    if (!platform::noting_short_memory(told)) std::fputs("error: there isn't enough memory\n", stderr);
}

void say(const messages::Message& message) noexcept
{
    if (message.row->level <= messages::Level::info && quiet) return;
    if (message.row->level == messages::Level::error && platform::memory_ran_short())
        say_memory_short(message.where.file);
    else if (!platform::noting_short_memory([&] { put_message(message); }))
        say_memory_short(message.where.file);
}

void print_latin1(std::string_view text) noexcept
{
    platform::noting_short_memory([text] { put(without_controls(platform::latin1_to_utf8(text))); });
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
