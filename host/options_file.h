// The plug-in's options file, imp_lw.ini, in the user's configuration directory: the plug-in reads it when it is
// initialised, and `lwimport options` writes it in the plug-in's own form.
#pragma once
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace host {

enum class OptionForm : uint8_t { flag, angle, directory };

struct OptionKey {
    std::string_view key;
    OptionForm form;
    std::string_view standard, help;
};

// In the order of the file.
std::span<const OptionKey> option_keys();

// With a slash at its end, as the plug-in takes it. Empty when there is no home, or its path is too long for the
// plug-in.
std::string options_directory();
std::string options_file_path(); // throws Failure when there is no such directory

// The value in the file, without its quotes; nothing when the file or the key isn't there.
std::optional<std::string> options_file_value(std::string_view key);

// Writes all keys: this one with `value`, the others as they are in the file, or else their standard values. `value` is
// refused with WrongUse when the key can't take it. Throws Failure when the file can't be written.
void set_options_file_value(std::string_view key, std::string value);

} // namespace host
