// The commands: one file each. `arguments` stand behind the command's word. Each returns the exit status, or throws
// Failure or WrongUse.
#pragma once
#include "host/command_line.h"
#include "host/failure.h"

namespace host {

int convert_command(Arguments arguments);
int info_command(Arguments arguments);
int find_command(Arguments arguments);
int check_command(Arguments arguments);
int call_command(Arguments arguments);
int options_command(Arguments arguments);

} // namespace host
