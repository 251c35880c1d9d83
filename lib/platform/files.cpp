#include "lib/platform/files.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstring>
#include <memory>
#include <new>
#include <optional>
#include <unordered_map>

#include <dirent.h>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include "lib/platform/memory.h"
#include "lib/platform/name_folding.h"
#include "lib/platform/text.h"

namespace platform {
namespace {

struct Listing {
    std::vector<std::string> entries; // sorted by bytes
    // Folded name -> the first entry, in byte order, that folds to it.
    std::unordered_map<std::u32string, std::size_t> folded;
};

// Listings by directory; a relative one is kept under its place, since the program changes its current directory.
std::unordered_map<std::string, std::unique_ptr<Listing>> listings;

OpenSubstitute open_substitute = nullptr;
void* open_substitute_context = nullptr;
OpenObserver open_observer = nullptr;
void* open_observer_context = nullptr;

void tell_observer(const char* path, const char* opened)
{
    if (open_observer) open_observer(open_observer_context, path, opened);
}

// Longer ones name nothing on any system that this runs on; the walk over the elements is bounded by it.
constexpr std::size_t path_limit = PATH_MAX;

std::optional<std::vector<std::string>> allowed_roots; // canonical; none: everything is allowed

// ---- the walk ------------------------------------------------------------------------------------------------------

std::string with_element(const std::string& directory, std::string_view element)
{
    std::string out = directory;
    if (!out.empty() && out.back() != '/') out += '/';
    return out.append(element);
}

bool exists(const std::string& path)
{
    struct stat info;
    return stat(path.c_str(), &info) == 0;
}

std::string listing_key(const std::string& directory)
{
    if (directory.starts_with('/')) return directory;
    char here[PATH_MAX];
    const std::string place = getcwd(here, sizeof here) ? here : "";
    return directory == "." ? with_element(place, "") : with_element(place, directory);
}

struct CloseDirectory {
    void operator()(DIR* directory) const { closedir(directory); }
};

// Directories that can't be read have an empty listing, which is kept too. Not by the C++ library's iterators: short of
// memory, they end the program.
const Listing& listing_of(const std::string& directory)
{
    const std::string key = listing_key(directory);
    if (const auto found = listings.find(key); found != listings.end()) return *found->second;

    auto listing = std::make_unique<Listing>();
    const std::unique_ptr<DIR, CloseDirectory> open(opendir(directory.empty() ? "." : directory.c_str()));
    if (!open && errno == ENOMEM) throw std::bad_alloc();
    while (const dirent* const entry = open ? readdir(open.get()) : nullptr) {
        const std::string_view name = entry->d_name;
        if (name != "." && name != "..") listing->entries.emplace_back(name);
    }
    std::sort(listing->entries.begin(), listing->entries.end());
    for (std::size_t i = 0; i < listing->entries.size(); ++i) {
        listing->folded.try_emplace(folded_entry(listing->entries[i]), i);
    }
    return *listings.emplace(key, std::move(listing)).first->second;
}

// The entry of `directory` that an element names when case doesn't count, or null. An element is Latin-1; one that
// holds UTF-8 all the same (a name beyond Latin-1, handed on as it stood on the command line) is met as that.
const std::string* entry_without_case(const std::string& directory, std::string_view element)
{
    const Listing& listing = listing_of(directory);
    auto found = listing.folded.find(folded_name(element));
    if (found == listing.folded.end()) {
        if (const std::optional<std::u32string> utf8 = folded_utf8_name(element)) found = listing.folded.find(*utf8);
    }
    return found == listing.folded.end() ? nullptr : &listing.entries[found->second];
}

struct Elements {
    bool rooted = false;
    bool directory = false; // the path ends in a separator, so that it can name a directory alone
    std::vector<std::string_view> elements;
};

Elements elements_of(std::string_view path)
{
    Elements out;
    if (has_drive(path)) {
        out.rooted = true;
        path.remove_prefix(2);
    }
    out.rooted = out.rooted || (!path.empty() && is_separator(path.front()));
    out.directory = !path.empty() && is_separator(path.back());
    while (!path.empty()) {
        const std::size_t end = std::min(path.find_first_of("/\\"), path.size());
        if (const std::string_view element = path.substr(0, end); !element.empty() && element != ".") {
            out.elements.push_back(element);
        }
        path.remove_prefix(std::min(end + 1, path.size()));
    }
    return out;
}

// The system's path of the elements, as far as they exist; empty when one doesn't.
std::string walk(const Elements& path)
{
    std::string here = path.rooted ? "/" : "";
    for (const std::string_view element : path.elements) {
        std::string next = with_element(here, element);
        if (!exists(next)) {
            const std::string* entry = entry_without_case(here, element);
            if (!entry) return {};
            next = with_element(here, *entry);
            if (!exists(next)) return {}; // a link that leads nowhere
        }
        here = std::move(next);
    }
    if (here.empty()) here = ".";
    return here;
}

// A Windows system takes "A\..\B" for "B" whether or not there is an A.
void drop_parents(Elements& path)
{
    std::vector<std::string_view> kept;
    for (const std::string_view element : path.elements) {
        if (element != "..") {
            kept.push_back(element);
        } else if (!kept.empty() && kept.back() != "..") {
            kept.pop_back();
        } else if (!path.rooted) {
            kept.push_back(element);
        }
    }
    path.elements = std::move(kept);
}

std::string find_elements(Elements path)
{
    std::string found = walk(path);
    if (found.empty() && std::find(path.elements.begin(), path.elements.end(), "..") != path.elements.end()) {
        drop_parents(path);
        found = walk(path);
    }
    if (path.directory && !found.empty() && !is_directory(found)) return {};
    return found;
}

// Whether an existing path lies in an allowed root once all links are followed.
bool is_allowed(const std::string& path)
{
    if (!allowed_roots) return true;
    char canonical[PATH_MAX];
    if (!realpath(path.c_str(), canonical)) return false;
    const std::string_view place(canonical);
    return std::any_of(allowed_roots->begin(), allowed_roots->end(), [place](const std::string& root) {
        return place.starts_with(root) && (root == "/" || place.size() == root.size() || place[root.size()] == '/');
    });
}

std::string resolve_or_throw(std::string_view path)
{
    if (path.empty() || path.size() >= path_limit || path.find('\0') != std::string_view::npos) return {};
    // The name as it stands comes first: off Windows a "\" or a colon may be part of a file's name.
    std::string found = exists(std::string(path)) ? std::string(path) : find_elements(elements_of(path));
    if (!found.empty() && !is_allowed(found)) return {};
    return found;
}

// Where a file or directory that doesn't exist yet would be made: its resolved directory and its name as given.
// Empty when the directory is missing, or where making it could leave the allowed roots.
std::string place_to_make(std::string_view path)
{
    if (path.empty() || path.size() >= path_limit || path.find('\0') != std::string_view::npos) return {};
    Elements parts = elements_of(path);
    if (parts.elements.empty() || parts.elements.back() == "..") return {};
    const std::string_view name = parts.elements.back();
    parts.elements.pop_back();
    parts.directory = true;
    const std::string directory = find_elements(parts);
    if (directory.empty() || !is_allowed(directory)) return {};
    std::string place = directory == "." ? std::string(name) : with_element(directory, name);
    // A link that leads nowhere yet would make its target, wherever that is.
    struct stat info;
    if (allowed_roots && lstat(place.c_str(), &info) == 0 && S_ISLNK(info.st_mode)) return {};
    return place;
}

bool makes_files(const char* mode)
{
    return *mode == 'w' || *mode == 'a';
}

// What these functions make themselves shows at once.
void forget_listing_round(const std::string& made)
{
    const std::size_t end = made.rfind('/');
    listings.erase(listing_key(end == std::string::npos ? "" : made.substr(0, std::max<std::size_t>(end, 1))));
}

std::FILE* open_resolved(const std::string& path, const char* mode)
{
    struct stat info;
    if (stat(path.c_str(), &info) == 0) {
        if (S_ISDIR(info.st_mode)) {
            errno = EISDIR;
            return nullptr;
        }
        if (S_ISFIFO(info.st_mode) && *mode == 'r' && !std::strchr(mode, '+')) {
            // Opening a pipe that nobody writes to would wait for ever; this way it reads as empty.
            const int descriptor = open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
            if (descriptor < 0) return nullptr;
            fcntl(descriptor, F_SETFL, fcntl(descriptor, F_GETFL) & ~O_NONBLOCK);
            std::FILE* const file = fdopen(descriptor, mode);
            if (!file) close(descriptor);
            return file;
        }
    }
    return std::fopen(path.c_str(), mode);
}

} // namespace

std::FILE* open_file(const char* path, const char* mode)
{
    if (!path || !mode) return nullptr;
    std::FILE* file = open_substitute ? open_substitute(open_substitute_context, path, mode) : nullptr;
    if (file) {
        tell_observer(path, path);
        return file;
    }
    std::string place;
    try {
        place = resolve_or_throw(path);
        if (place.empty() && makes_files(mode)) {
            place = place_to_make(path);
            forget_listing_round(place);
        }
        if (place.empty()) {
            errno = ENOENT;
        } else {
            file = open_resolved(place, mode);
        }
    } catch (const std::bad_alloc&) {
        errno = ENOMEM;
    }
    const int error = errno;
    if (!file && error == ENOMEM) note_short_memory();
    tell_observer(path, file ? place.c_str() : "");
    errno = error;
    return file;
}

std::string resolve(std::string_view path)
{
    std::string found;
    noting_short_memory([&] { found = resolve_or_throw(path); });
    return found;
}

int make_directory(const char* path)
{
    if (!path) return ENOENT;
    try {
        if (!resolve_or_throw(path).empty()) return EEXIST;
        const std::string place = place_to_make(path);
        if (place.empty()) return ENOENT;
        forget_listing_round(place);
        return mkdir(place.c_str(), 0777) == 0 ? 0 : errno;
    } catch (const std::bad_alloc&) {
        note_short_memory();
        return ENOMEM;
    }
}

void set_allowed_roots(std::vector<std::string> roots)
{
    if (roots.empty()) {
        allowed_roots.reset();
        return;
    }
    // A root that doesn't exist allows nothing; the list stays one that limits.
    allowed_roots.emplace();
    for (const std::string& root : roots) {
        char canonical[PATH_MAX];
        if (realpath(root.c_str(), canonical)) allowed_roots->push_back(canonical);
    }
}

static mode_t kind_of(std::string_view path)
{
    struct stat info = {};
    noting_short_memory([&] { info.st_mode = stat(std::string(path).c_str(), &info) == 0 ? info.st_mode : 0; });
    return info.st_mode;
}

bool is_directory(std::string_view path)
{
    return S_ISDIR(kind_of(path));
}

bool is_file(std::string_view path)
{
    const mode_t kind = kind_of(path);
    return kind != 0 && !S_ISDIR(kind);
}

const std::vector<std::string>& list_directory(const std::string& directory)
{
    static const std::vector<std::string> none;
    const std::vector<std::string>* entries = &none;
    noting_short_memory([&] { entries = &listing_of(directory).entries; });
    return *entries;
}

void forget_directories()
{
    listings.clear();
}

void set_open_substitute(OpenSubstitute substitute, void* context)
{
    open_substitute = substitute;
    open_substitute_context = context;
}

std::FILE* temporary_file()
{
#if defined(__linux__)
    // In memory, as far as there is any, and nowhere in the file system.
    if (const int descriptor = memfd_create("lwimport", MFD_CLOEXEC); descriptor >= 0) {
        if (std::FILE* const file = fdopen(descriptor, "w+b")) return file;
        close(descriptor);
    }
#endif
    return std::tmpfile();
}

void set_open_observer(OpenObserver observer, void* context)
{
    open_observer = observer;
    open_observer_context = context;
}

} // namespace platform
