// The commands: one file each. `arguments` stand behind the command's word. Each returns the exit status, or throws
// Failure or WrongUse.
#pragma once
#include <span>

namespace host {

using Arguments = std::span<char* const>;

int call_command(Arguments arguments);

} // namespace host
