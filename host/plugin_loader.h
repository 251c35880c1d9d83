// The plug-in, loaded at run time from the program's own installation and driven through its one function.
#pragma once
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace host {

// One entry of the two lists of a call: bytes as the plug-in shall see them.
struct Word {
    std::string name;
    std::optional<std::string> text = std::nullopt; // a string value; it is passed as a writable copy
    std::optional<intptr_t> integer = std::nullopt; // a value in the slot itself; neither: a null
};

// True for the option words whose value is an integer in the slot.
bool is_integer_word(std::string_view name);

// One call of the entry point; the plug-in is loaded at the first. Returns what the call left in `result`.
// Throws Failure when the plug-in isn't where it belongs or isn't one.
int32_t call_plugin(std::vector<Word> words);

} // namespace host
