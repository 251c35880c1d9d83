// The plug-in, loaded at run time from the program's own installation and driven through its one function.
#pragma once
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace host {

// One entry of the two lists of a call: bytes as the plug-in shall see them.
struct Word {
    std::string name;
    std::optional<std::string> text = std::nullopt; // a string value; it is passed as a writable copy
    std::optional<intptr_t> integer = std::nullopt; // a value in the slot itself; neither: a null
};

// One call of the entry point; the plug-in is loaded at the first. Returns what the call left in `result`.
// Throws Failure when the plug-in isn't where it belongs or isn't one.
int32_t call_plugin(std::vector<Word> words);

} // namespace host
