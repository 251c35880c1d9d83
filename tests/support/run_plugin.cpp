#include "tests/support/run_plugin.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>

#include "lib/import/implugin.h"
#include "lib/import/lw/base/option_variables.h"
#include "lib/platform/files.h"
#include "lib/services/host.h"
#include "lib/toolkit/report.h"
#include "lib/toolkit/scene/scene.h"
#include "lib/toolkit/words/trace.h"

namespace plugin_test {

namespace fs = std::filesystem;

static std::string leveled(int32_t level, std::string_view text)
{
    return std::to_string(level) + " " + std::string(text);
}

static services::Host listening_host(PluginRun& run, int stop_at_poll)
{
    services::Host host;
    host.report = [&run](int32_t level, std::string_view text) { run.reports.push_back(leveled(level, text)); };
    host.print = [&run](std::string_view text) { run.printed += text; };
    host.info = [&run](std::string_view text) { run.progress.emplace_back(text); };
    host.poll = [&run, stop_at_poll](const Import_IO_Abort_Record&) { return ++run.polls == stop_at_poll; };
    return host;
}

static void hear_toolkit(void* context, int32_t level, const char* text)
{
    static_cast<PluginRun*>(context)->toolkit.push_back(leveled(level, text));
}

static std::string trace_path()
{
    static const std::string path = (fs::temp_directory_path() / "plugin_trace_XXXXXX").string();
    static const std::string made = [] {
        std::string name = path;
        const int handle = mkstemp(name.data());
        if (handle < 0) throw std::runtime_error("can't make a file for the trace in the temporary directory");
        std::fclose(fdopen(handle, "w"));
        return name;
    }();
    return made;
}

static std::vector<std::string> take_trace()
{
    tv::set_trace_file(nullptr);
    std::ifstream file(trace_path());
    std::vector<std::string> lines;
    for (std::string line; std::getline(file, line);) lines.push_back(line);
    fs::remove(trace_path());
    return lines;
}

void start_fresh()
{
    tv::clear_scene();
    services::clear();
    platform::forget_directories();
    lw_release_import_variables(); // the next call applies the defaults again
}

PluginRun call(std::vector<Word> words, int stop_at_poll)
{
    std::vector<char*> names;
    std::vector<void*> values;
    for (Word& word : words) {
        names.push_back(word.name.data());
        values.push_back(word.is_text ? static_cast<void*>(word.text.data()) : reinterpret_cast<void*>(word.number));
    }
    names.push_back(nullptr);
    values.push_back(nullptr);

    PluginRun run;
    services::set_host(listening_host(run, stop_at_poll));
    tv::set_report_sink(hear_toolkit, &run);
    if (!tv::set_trace_file(trace_path().c_str())) throw std::runtime_error("can't write the trace");
    Tavrin_Plugin_EntryPoint(names.data(), values.data(), &run.result, nullptr);
    run.trace = take_trace();
    tv::set_report_sink(nullptr, nullptr);
    services::set_host({});
    run.run_left_open = services::run_is_open();
    return run;
}

PluginRun convert(const std::string& file, std::vector<Word> options, int stop_at_poll)
{
    start_fresh();
    std::vector<Word> words = {{"execute_geometry_converter", 0}};
    words.insert(words.end(), options.begin(), options.end());
    words.emplace_back("filename", file);
    return call(std::move(words), stop_at_poll);
}

std::vector<std::string> calls_of(const PluginRun& run, std::initializer_list<std::string_view> functions)
{
    std::vector<std::string> found;
    for (const std::string& line : run.trace) {
        for (const std::string_view function : functions) {
            const std::string head = "[\"" + std::string(function) + "\"";
            if (line.starts_with(head)) found.push_back(line);
        }
    }
    return found;
}

TemporaryDirectory::TemporaryDirectory() : before_(fs::current_path().string())
{
    std::string name = (fs::temp_directory_path() / "plugin_test_XXXXXX").string();
    if (!mkdtemp(name.data())) throw std::runtime_error("can't make a temporary directory");
    path_ = name;
    fs::current_path(path_);
    platform::forget_directories();
}

TemporaryDirectory::~TemporaryDirectory()
{
    std::error_code ignored;
    fs::current_path(before_, ignored);
    fs::remove_all(path_, ignored);
    platform::forget_directories();
}

void TemporaryDirectory::write(const std::string& name, std::string_view bytes) const
{
    const fs::path path = fs::path(path_) / name;
    fs::create_directories(path.parent_path());
    std::ofstream file(path, std::ios::binary);
    file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    if (!file.flush()) throw std::runtime_error("can't write " + path.string());
    platform::forget_directories();
}

std::string TemporaryDirectory::read(const std::string& name) const
{
    std::ifstream file(fs::path(path_) / name, std::ios::binary);
    if (!file) throw std::runtime_error("can't read " + name);
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
}

} // namespace plugin_test
