// Files on Windows: the system's own ways, and what strangers' names must not do there.
#include "lib/platform/files.h"

#include <algorithm>
#include <cerrno>
#include <cwctype>
#include <filesystem>
#include <io.h>
#include <map>
#include <new>
#include <system_error>

#include "lib/platform/memory.h"
#include "lib/platform/wide.h"

namespace platform {
namespace {

namespace fs = std::filesystem;

std::map<std::string, std::vector<std::string>> listings; // by whole path
bool limited = false;                                     // to these, which are final paths
std::vector<std::wstring> allowed_roots;
OpenSubstitute open_substitute = nullptr;
void* open_substitute_context = nullptr;
OpenObserver open_observer = nullptr;
void* open_observer_context = nullptr;

bool exists(const std::wstring& path)
{
    return GetFileAttributesW(path.c_str()) != INVALID_FILE_ATTRIBUTES;
}

// A name beyond ASCII is UTF-8 or Latin-1: whichever exists, else what `wide` takes it for. Empty for what no path is.
std::wstring system_path(std::string_view path)
{
    if (path.empty() || path.size() > 32767 || path.find('\0') != std::string_view::npos) return {};
    std::wstring first = wide(path);
    if (exists(first)) return first;
    std::wstring latin1 = wide_of_latin1(path);
    return exists(latin1) ? latin1 : first;
}

// An existing path with its last element as the disk spells it.
std::wstring disk_spelling(std::wstring path)
{
    WIN32_FIND_DATAW entry = {};
    const std::size_t name = path.find_last_of(L"/\\:") + 1; // npos + 1 is 0
    const std::wstring_view last = std::wstring_view(path).substr(name);
    if (last.empty() || last == L"." || last == L"..") return path;
    HANDLE const search = FindFirstFileW(path.c_str(), &entry);
    if (search == INVALID_HANDLE_VALUE) return path;
    FindClose(search);
    return path.replace(name, std::wstring::npos, entry.cFileName);
}

// Where an existing file or directory really lies, links followed; empty when it can't be told.
std::wstring final_path(const std::wstring& path)
{
    HANDLE const file =
        CreateFileW(path.c_str(), 0, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr, OPEN_EXISTING,
                    FILE_FLAG_BACKUP_SEMANTICS, nullptr); // the flag opens directories too
    if (file == INVALID_HANDLE_VALUE) return {};
    std::wstring out(32768, L'\0');
    const DWORD length = GetFinalPathNameByHandleW(file, out.data(), static_cast<DWORD>(out.size()), 0);
    CloseHandle(file);
    out.resize(length < out.size() ? length : 0);
    for (wchar_t& c : out) c = static_cast<wchar_t>(std::towlower(c));
    return out;
}

bool is_allowed(const std::wstring& path)
{
    if (!limited) return true;
    const std::wstring place = final_path(path);
    return !place.empty() && std::any_of(allowed_roots.begin(), allowed_roots.end(), [&](const std::wstring& root) {
        return place.starts_with(root) &&
               (root.back() == L'\\' || place.size() == root.size() || place[root.size()] == L'\\');
    });
}

// For a file that may be made: it counts by its directory.
bool is_allowed_to_make(const std::wstring& path)
{
    if (!limited) return true;
    if (exists(path)) return is_allowed(path);
    const std::size_t end = path.find_last_of(L"/\\:");
    return is_allowed(end == std::wstring::npos ? L"." : path.substr(0, end + 1));
}

// "CON", "COM1.lwo" and their like are devices in every directory: reading one would wait for ever.
std::FILE* open_disk_file(const std::wstring& path, const char* mode)
{
    std::FILE* const file = _wfopen(path.c_str(), wide(mode).c_str());
    if (!file) return nullptr;
    if (GetFileType(reinterpret_cast<HANDLE>(_get_osfhandle(_fileno(file)))) == FILE_TYPE_DISK) return file;
    std::fclose(file);
    errno = ENOENT;
    return nullptr;
}

} // namespace

std::FILE* open_file(const char* path, const char* mode)
{
    if (!path || !mode) return nullptr;
    std::FILE* file = open_substitute ? open_substitute(open_substitute_context, path, mode) : nullptr;
    if (file) {
        if (open_observer) open_observer(open_observer_context, path, path);
        return file;
    }
    std::string opened;
    try {
        const std::wstring place = system_path(path);
        errno = ENOENT;
        const bool makes = *mode == 'w' || *mode == 'a';
        if (!place.empty() && (makes ? is_allowed_to_make(place) : is_allowed(place)))
            file = open_disk_file(place, mode);
        if (file) opened = narrow(place);
        if (file && makes) listings.clear();
    } catch (const std::bad_alloc&) {
        note_short_memory();
        errno = ENOMEM;
    }
    const int error = errno;
    if (open_observer) open_observer(open_observer_context, path, opened.c_str());
    errno = error;
    return file;
}

std::string resolve(std::string_view path)
{
    try {
        const std::wstring place = system_path(path);
        return !place.empty() && exists(place) && is_allowed(place) ? narrow(disk_spelling(place)) : std::string();
    } catch (const std::bad_alloc&) {
        note_short_memory();
        return {};
    }
}

bool is_directory(std::string_view path)
{
    const DWORD attributes = GetFileAttributesW(system_path(path).c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

bool is_file(std::string_view path)
{
    const DWORD attributes = GetFileAttributesW(system_path(path).c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) == 0;
}

int make_directory(const char* path)
{
    const std::wstring place = system_path(path ? path : "");
    if (place.empty() || !is_allowed_to_make(place)) return ENOENT;
    listings.clear();
    return _wmkdir(place.c_str()) == 0 ? 0 : errno;
}

const std::vector<std::string>& list_directory(const std::string& directory)
{
    static const std::vector<std::string> none;
    try {
        const fs::path place = system_path(directory.empty() ? "." : directory);
        std::error_code error;
        const std::string key = narrow(fs::absolute(place, error).wstring());
        if (const auto known = listings.find(key); known != listings.end()) return known->second;
        std::vector<std::string> entries;
        fs::directory_iterator entry(place, error);
        for (; !error && entry != fs::directory_iterator(); entry.increment(error))
            entries.push_back(narrow(entry->path().filename().wstring()));
        std::sort(entries.begin(), entries.end());
        return listings.emplace(key, std::move(entries)).first->second;
    } catch (const std::bad_alloc&) {
        note_short_memory();
        return none;
    }
}

void forget_directories()
{
    listings.clear();
}

void set_allowed_roots(std::vector<std::string> roots)
{
    limited = !roots.empty();
    allowed_roots.clear();
    // A root that doesn't exist allows nothing; the list stays one that limits.
    for (const std::string& root : roots)
        if (std::wstring place = final_path(system_path(root)); !place.empty())
            allowed_roots.push_back(std::move(place));
}

void set_open_substitute(OpenSubstitute substitute, void* context)
{
    open_substitute = substitute;
    open_substitute_context = context;
}

// The C library's own would lie in the root of the drive, where not everybody may write. Gone when it is closed.
std::FILE* temporary_file()
{
    wchar_t directory[MAX_PATH + 1], name[MAX_PATH + 1];
    if (!GetTempPathW(MAX_PATH + 1, directory) || !GetTempFileNameW(directory, L"lwi", 0, name)) return nullptr;
    return _wfopen(name, L"w+bTD");
}

void set_open_observer(OpenObserver observer, void* context)
{
    open_observer = observer;
    open_observer_context = context;
}

} // namespace platform
