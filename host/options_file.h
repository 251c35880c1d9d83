// The plug-in's options file in the user's configuration directory: the plug-in reads it when it is initialised, and
// `lwimport options` writes it in the plug-in's own form.
#pragma once
#include <optional>
#include <string>

#include "lib/import/lw/base/option_table.h"

namespace host {

// With a slash at its end, as the plug-in takes it. Empty when there is no home, or its path is too long for the
// plug-in.
std::string options_directory();
std::string options_file_path(); // throws Failure when there is no such directory

// As the file would have it, without quotes.
std::string standard_value(const lw_option& option);

// The value in the file, without its quotes; nothing when the file or the key isn't there.
std::optional<std::string> options_file_value(lw_option_number option);

// Writes all keys: this one with `value`, the others as they are in the file, or else their standard values. `value` is
// refused with WrongUse when the key can't take it. Throws Failure when the file can't be written.
void set_options_file_value(lw_option_number option, const std::string& value);

} // namespace host
