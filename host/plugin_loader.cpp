#include "host/plugin_loader.h"

#include "host/failure.h"
#include "lib/import/implugin.h"
#include "lib/platform/library.h"
#include "lib/platform/places.h"

namespace host {

using messages::message;

static Tavrin_Plugin_EntryPoint_Function entry_point()
{
    static Tavrin_Plugin_EntryPoint_Function function = nullptr;
    if (function) return function;
    const std::string directory = platform::library_directory();
    if (directory.empty()) throw Failure(message<"plugin-place-unknown">());
    const std::string path = directory + "/" + platform::library_name("imp_lw");
    // Never closed: the plug-in's option variables live as long as the library, and so does the program.
    std::string problem;
    void* const library = platform::load_library(path, problem);
    if (!library) throw Failure(message<"plugin-not-loaded">(problem));
    constexpr const char* name = "Tavrin_Plugin_EntryPoint";
    function = reinterpret_cast<Tavrin_Plugin_EntryPoint_Function>(platform::library_symbol(library, name));
    if (!function) throw Failure(message<"plugin-foreign">(path, name));
    return function;
}

int32_t call_plugin(std::vector<Word> words)
{
    const Tavrin_Plugin_EntryPoint_Function function = entry_point();
    std::vector<char*> names;
    std::vector<void*> values;
    for (Word& word : words) {
        names.push_back(word.name.data());
        if (word.text)
            values.push_back(word.text->data());
        else
            values.push_back(reinterpret_cast<void*>(word.integer.value_or(0))); // NOLINT: the slot holds the number
    }
    names.push_back(nullptr);
    values.push_back(nullptr);
    int32_t result = 0;
    function(names.data(), values.data(), &result, nullptr);
    return result;
}

} // namespace host
