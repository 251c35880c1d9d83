#include "lib/toolkit/calls/environment.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>

#include "lib/platform/files.h"
#include "lib/platform/latin1.h"
#include "lib/platform/text.h"
#include "lib/toolkit/report.h"

namespace tv {

namespace {

constexpr std::size_t found_path_size = 300; // with its end

struct Environment {
    std::map<std::string, std::string, std::less<>> set_by_host;
    std::map<std::string, std::string, std::less<>> of_process; // as handed out: the pointers are kept by callers
    std::vector<std::string> search_path;
    std::vector<std::string> endings; // that names of files may bear or lack
};

Environment& environment()
{
    static Environment kept;
    return kept;
}

const char* environment_value(const char* word)
{
    Environment& in = environment();
    const auto found = in.set_by_host.find(std::string_view(word));
    if (found != in.set_by_host.end()) return found->second.c_str();
    const char* const value = std::getenv(word);
    if (!value) return nullptr;
    std::string& kept = in.of_process[word];
    if (std::string latin1 = platform::utf8_to_latin1(value); latin1 != kept) kept = std::move(latin1);
    return kept.c_str();
}

bool is_drive(std::string_view element)
{
    return platform::has_drive(element) && (element.size() == 2 || platform::is_separator(element[2]));
}

std::vector<std::string> split(std::string_view list, std::string_view separators)
{
    std::vector<std::string> parts;
    while (!list.empty()) {
        const std::size_t end = std::min(list.find_first_of(separators), list.size());
        if (end > 0) parts.emplace_back(list.substr(0, end));
        list.remove_prefix(std::min(end + 1, list.size()));
    }
    return parts;
}

// Directories of a list as an environment gives them: parted by ";", and by ":" too where no drive letter needs it.
std::vector<std::string> split_search_path(std::string_view list)
{
    std::vector<std::string> parts = split(list, ";");
    for (const std::string& part : parts)
        if (is_drive(part)) return parts;
    return split(list, ";:");
}

// The name first, then as people left its ending off or put it on.
std::vector<std::string> spellings(const std::string& name)
{
    std::vector<std::string> all{name};
    const bool bare = platform::extension_of(name).empty();
    for (const std::string& ending : environment().endings) {
        if (bare)
            all.push_back(name + ending);
        else if (platform::ends_in_any_case(name, ending))
            all.push_back(name.substr(0, name.size() - ending.size()));
    }
    return all;
}

std::FILE* open_in(const std::string& directory, const std::string& name, const char* mode, char* found_path)
{
    std::string path = directory;
    if (!path.empty() && !platform::is_separator(path.back())) path += '/';
    path += name;
    if (path.size() + 1 > found_path_size) return nullptr;
    std::FILE* const file = platform::open_file(path.c_str(), mode);
    if (!file || !found_path) return file;
    const std::string resolved = platform::resolve(path); // the disk's own spelling, where it fits
    const std::string& found = resolved.empty() || resolved.size() + 1 > found_path_size ? path : resolved;
    std::memcpy(found_path, found.c_str(), found.size() + 1);
    return file;
}

std::FILE* search(const char* name, const char* mode, const char* word, char* found_path)
{
    std::vector<std::string> directories = environment().search_path;
    if (const char* const listed = word ? environment_value(word) : nullptr)
        for (std::string& directory : split_search_path(listed)) directories.push_back(std::move(directory));
    const std::vector<std::string> names = spellings(name);
    for (const std::string& directory : directories)
        for (const std::string& spelling : names)
            if (std::FILE* const file = open_in(directory, spelling, mode, found_path)) return file;
    return nullptr;
}

} // namespace

void set_environment(std::string_view word, std::string_view value)
{
    if (value.empty()) {
        const auto found = environment().set_by_host.find(word);
        if (found != environment().set_by_host.end()) environment().set_by_host.erase(found);
    } else {
        environment().set_by_host.insert_or_assign(std::string(word), std::string(value));
    }
}

void set_search_path(std::vector<std::string> directories, std::vector<std::string> endings)
{
    environment().search_path = std::move(directories);
    environment().endings = std::move(endings);
}

} // namespace tv

extern "C" {

void Tv_Inquire_Environment(const char* word, const char** value)
{
    *value = nullptr;
    tv::guarded("Tv_Inquire_Environment", [&] {
        if (word) *value = tv::environment_value(word);
    });
}

void Tv_File_Exists(const char* path, int32_t* exists)
{
    *exists = 0;
    tv::guarded("Tv_File_Exists", [&] { *exists = path && !platform::resolve(path).empty() ? 1 : 0; });
}

void* Tv_Search_And_Open_File(const char* name, const char* mode, int32_t, const char* search_path_word,
                              char* found_path)
{
    std::FILE* file = nullptr;
    if (found_path) found_path[0] = 0;
    tv::guarded("Tv_Search_And_Open_File", [&] {
        if (name && *name && mode) file = tv::search(name, mode, search_path_word, found_path);
    });
    return file;
}

void Tv_Fclose_File(void* handle)
{
    if (handle) std::fclose(static_cast<std::FILE*>(handle));
}

} // extern "C"
