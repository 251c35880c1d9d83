// lwimport find: each file that the input names, where it is, or every place where it isn't.
#include <cstdio>
#include <map>
#include <nlohmann/json.hpp>
#include <tuple>

#include "host/command_line.h"
#include "host/commands/commands.h"
#include "host/commands/inspection.h"
#include "host/import_run.h"
#include "host/path_display.h"
#include "lib/messages/numbers.h"
#include "lib/platform/latin1.h"

namespace host {

using messages::counted;
using messages::grouped;

using Json = nlohmann::ordered_json;

namespace {

struct Entry {
    const FileReference* file;
    std::size_t times = 1;
};

} // namespace

static const char* kind_name(const restore::Reference& reference)
{
    return reference.kind == restore::ReferenceKind::object ? "object" : "image";
}

// Each stored path once, in the order of the files.
static std::vector<Entry> distinct_entries(const ImportRun& run)
{
    std::vector<Entry> entries;
    std::map<std::pair<restore::ReferenceKind, std::string>, std::size_t> known;
    for (const std::vector<FileReference>* const list : {&run.files.objects, &run.files.images})
        for (const FileReference& file : *list) {
            const auto [at, is_new] = known.try_emplace({file.reference.kind, file.reference.stored}, entries.size());
            if (is_new)
                entries.push_back({&file});
            else
                ++entries[at->second].times;
        }
    return entries;
}

static std::string not_found_text(const std::vector<std::string>& tried)
{
    std::string text = "\n  not found\n  looked for:";
    for (const std::string& line : place_lines(tried, tried.size()).lines) text += "\n    " + line;
    return text;
}

static void print_text(const ImportRun& run, const std::vector<Entry>& entries)
{
    std::printf("content directory: %s\n", shown_path(run.content_directory).c_str());
    std::size_t missing = 0;
    for (const Entry& entry : entries) {
        const FileReference& file = *entry.file;
        std::string text = file.asked_by.text() + ": " + kind_name(file.reference) + " " +
                           platform::latin1_to_utf8(file.reference.stored);
        if (entry.times > 1) text += " (named " + grouped(entry.times) + " times)";
        if (!file.reached)
            text += "\n  not looked for: reading ended before";
        else if (!file.found.empty())
            text += "\n  found: " + shown_path(file.found);
        else
            text += not_found_text(file.tried);
        if (file.is_missing()) ++missing;
        std::printf("%s\n", text.c_str());
    }
    std::printf("%s, %s missing\n", counted(entries.size(), "file", "files").c_str(), grouped(missing).c_str());
}

static void print_json(const std::string& input, const ImportRun& run, const std::vector<Entry>& entries)
{
    Json list = Json::array();
    for (const Entry& entry : entries) {
        const FileReference& file = *entry.file;
        Json tried = Json::array();
        for (const std::string& place : file.tried) tried.push_back(shown_path(place));
        list.push_back({{"kind", kind_name(file.reference)},
                        {"stored", platform::latin1_to_utf8(file.reference.stored)},
                        {"asked_by", file.asked_by.text()},
                        {"times", entry.times},
                        {"looked_for", file.reached},
                        {"found", file.found.empty() ? Json(nullptr) : Json(shown_path(file.found))},
                        {"tried", std::move(tried)}});
    }
    const Json all = {{"file", shown_path(input)},
                      {"content_directory", shown_path(run.content_directory)},
                      {"references", std::move(list)}};
    std::printf("%s\n", all.dump(2, ' ', false, Json::error_handler_t::replace).c_str());
}

int find_command(Arguments arguments)
{
    CommandLine line("  lwimport find IN [--json]\n",
                     "Lists the objects and images that a scene or object names: the path as stored, and where it is "
                     "found,\nor every place where it was looked for.",
                     {"lwimport find harbour.lws", "what is missing, and where it could be put",
                      "lwimport find harbour.lws --content-dir /archive/content --json", "the same for programs"});
    const std::optional<Inspection> inspection = inspect(line, arguments);
    if (!inspection) return status_done;
    const ImportRun& run = inspection->run;
    const std::vector<Entry> entries = distinct_entries(run);
    if (inspection->json)
        print_json(inspection->input, run, entries);
    else
        print_text(run, entries);
    return run.imported ? status_done : status_failed;
}

} // namespace host
