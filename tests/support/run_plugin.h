// Drives the plug-in through its entry point, as a host would, and keeps what comes of it.
#pragma once
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace plugin_test {

// One entry of the host's lists. Words that take a string are given one, the others an integer.
struct Word {
    Word(std::string word, std::string value) : name(std::move(word)), text(std::move(value)), is_text(true) {}
    Word(std::string word, const char* value) : Word(std::move(word), std::string(value)) {}
    Word(std::string word, intptr_t value) : name(std::move(word)), number(value) {}
    Word(std::string word, int value) : Word(std::move(word), static_cast<intptr_t>(value)) {}

    std::string name, text;
    intptr_t number = 0;
    bool is_text = false;
};

struct PluginRun {
    int32_t result = -999;             // -999: not written
    std::vector<std::string> trace;    // the lines of the call trace
    std::vector<std::string> reports;  // "4 text", of Import_IO_Report_Error
    std::vector<std::string> toolkit;  // "4 text", of Tv_Report_Error
    std::string printed;               // what Import_IO_printf showed outside a report
    std::vector<std::string> progress; // of Import_IO_Display_Info_Text
    int polls = 0;                     // of Import_IO_Check_For_Abort
    bool run_left_open = false;        // Initialize without Cleanup
};
using Run = PluginRun; // within a TEST's body Run is GoogleTest's own

// Empty scene, no names noted, options as if the library had just been loaded.
void start_fresh();

// One call of the entry point with just these words. stop_at_poll: the abort poll that answers yes; 0: none.
PluginRun call(std::vector<Word> words, int stop_at_poll = 0);

// start_fresh(), then "execute_geometry_converter" with the option words and "filename".
PluginRun convert(const std::string& file, std::vector<Word> options = {}, int stop_at_poll = 0);

// The lines whose call is one of these functions, in order.
std::vector<std::string> calls_of(const PluginRun& run, std::initializer_list<std::string_view> functions);

// An empty directory that is the current one meanwhile, so that names in traces are the same everywhere. Gone with it.
class TemporaryDirectory {
public:
    TemporaryDirectory();
    ~TemporaryDirectory();
    TemporaryDirectory(const TemporaryDirectory&) = delete;
    TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;

    // Makes a file in it, and the directories that its name asks for.
    void write(const std::string& name, std::string_view bytes) const;
    std::string read(const std::string& name) const;
    const std::string& path() const { return path_; }

private:
    std::string path_, before_;
};

} // namespace plugin_test
