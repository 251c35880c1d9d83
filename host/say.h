// What the user reads on standard error, and the one line of progress that gives way to it.
#pragma once
#include <string>
#include <string_view>

#include "lib/messages/message.h"

namespace host {

// One message, worded. `info` is silent after set_quiet(true). Control characters other than line feed and tab are
// shown as "?", since names out of files reach a terminal here. Never throws. Once memory has run short errors are its
// consequences: the first one is told as that, the others aren't.
void say(const messages::Message& message) noexcept;

// Tells in one line, prepared in advance where need be, that memory ran short; once for each file.
void say_memory_short(std::string_view file) noexcept;
void forget_memory_short(); // another file begins

// Text as a plug-in printed it, Latin-1, its own line feeds kept.
void print_latin1(std::string_view text) noexcept;

void set_quiet(bool quiet);

// A line that the next message overwrites; an empty one takes it away. Does nothing unless standard error is a terminal.
void show_progress_line(const std::string& line);

} // namespace host
