// What the user reads on standard error, and the one line of progress that gives way to it.
#pragma once
#include <cstdint>
#include <cstdio>
#include <string>
#include <string_view>

namespace host {

enum class Level : uint8_t { note, warning, error };

// One message, UTF-8; a line feed at its end is optional. `note` is silent after set_quiet(true). Control characters
// other than line feed and tab are shown as "?", since names out of files reach a terminal here.
void say(Level level, std::string_view text);

// Text as a plug-in printed it, Latin-1, its own line feeds kept.
void print_latin1(std::string_view text);

void set_quiet(bool quiet);

// Text in a terminal's colour where standard error is one and NO_COLOR isn't set, else as it is.
bool uses_color();

// A line that the next message overwrites; an empty one takes it away. Does nothing unless standard error is a terminal.
void show_progress_line(const std::string& line);

} // namespace host
