#include "host/finding/search_path.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <span>
#include <unordered_map>
#include <unordered_set>

#include "lib/import/lw/base/object_extensions.h"
#include "lib/platform/files.h"
#include "lib/platform/text.h"

namespace host {

namespace fs = std::filesystem;

// Without the drive or volume in front, in elements.
static std::vector<std::string_view> elements_of(std::string_view stored)
{
    stored.remove_prefix(std::min(stored.size(), stored.rfind(':') + 1)); // npos + 1 is 0
    std::vector<std::string_view> elements;
    while (!stored.empty()) {
        const auto end = static_cast<std::size_t>(std::find_if(stored.begin(), stored.end(), platform::is_separator) -
                                                  stored.begin());
        const std::string_view element = stored.substr(0, end);
        if (!element.empty() && element != ".") elements.push_back(element);
        stored.remove_prefix(std::min(end + 1, stored.size()));
    }
    return elements;
}

std::string joined(const std::string& directory, std::string_view name)
{
    std::string path = directory;
    if (path.empty() || path.back() != '/') path += '/';
    return path.append(name);
}

static std::string resolve_file(const std::string& path, restore::ReferenceKind kind)
{
    const auto file = [](const std::string& candidate) {
        std::string found = platform::resolve(candidate);
        return !found.empty() && platform::is_file(found) ? found : std::string();
    };
    std::string found = file(path);
    if (!found.empty() || kind != restore::ReferenceKind::object) return found;
    for (const std::string_view extension : lw_object_extensions)
        if (platform::ends_in_any_case(path, extension)) return file(path.substr(0, path.size() - extension.size()));
    if (platform::last_element(path).find('.') != std::string_view::npos) return {};
    for (const std::string_view extension : lw_object_extensions)
        if (found = file(path + std::string(extension)); !found.empty()) break;
    return found;
}

// System directories by a directory and elements below it; many stored paths lead through the same few.
class Directories {
public:
    // Empty when there is none.
    const std::string& find(const std::string& directory, std::span<const std::string_view> elements)
    {
        std::string path = directory;
        for (const std::string_view element : elements) path = joined(path, element);
        const auto [entry, is_new] = known_.try_emplace(path);
        if (is_new) {
            entry->second = platform::resolve(path);
            if (!platform::is_directory(entry->second)) entry->second.clear();
        }
        return entry->second;
    }

private:
    std::unordered_map<std::string, std::string> known_;
};

// How well `directory` explains a stored path: 3 the whole path is found below it, 2 its last elements, 1 the name alone.
static std::size_t score(const std::string& directory, const restore::Reference& reference, Directories& directories)
{
    const std::vector<std::string_view> elements = elements_of(reference.stored);
    if (elements.empty()) return 0;
    const std::span<const std::string_view> all(elements);
    for (std::size_t first = 0; first < all.size(); ++first) {
        const std::string& below = directories.find(directory, all.subspan(first, all.size() - 1 - first));
        if (below.empty() || resolve_file(joined(below, all.back()), reference.kind).empty()) continue;
        return first + 1 == all.size() ? 1 : first > 0 ? 2 : 3;
    }
    return 0;
}

// Where habit puts it: scenes lie in Scenes/, objects in Objects/ of the content directory, or deeper.
static std::string usual_content_directory(const std::string& start)
{
    for (fs::path at = start; at.has_relative_path(); at = at.parent_path()) {
        const std::string name = platform::lower_case(at.filename().string());
        if (name == "scenes" || name == "objects") return at.parent_path().string();
    }
    return start;
}

ContentDirectory find_content_directory(const std::string& start, const std::vector<restore::Reference>& references)
{
    std::vector<const restore::Reference*> distinct;
    std::unordered_set<std::string> seen;
    for (const restore::Reference& reference : references) {
        if (distinct.size() == max_references_tried) break;
        if (seen.insert(platform::lower_case(reference.stored)).second) distinct.push_back(&reference);
    }
    ContentDirectory best{usual_content_directory(start), false};
    std::size_t best_score = 0;
    Directories directories;
    fs::path at = start;
    for (std::size_t level = 0; level < max_levels_up; ++level, at = at.parent_path()) {
        std::size_t total = 0;
        for (const restore::Reference* const reference : distinct) total += score(at.string(), *reference, directories);
        if (total > best_score) {
            best_score = total;
            best = {at.string(), true};
        }
        // The root itself holds no content; what a stored path finds there would be the system's.
        if (!at.has_relative_path() || !at.parent_path().has_relative_path()) break;
    }
    return best;
}

// Sub-directories by usual names, each with its own sub-directories behind it.
static std::vector<std::string> usual_directories(const std::string& directory)
{
    static constexpr std::array<std::string_view, 4> usual = {"objects", "scenes", "images", "surfaces"};
    std::vector<std::string> found;
    for (const std::string_view name : usual) {
        for (const std::string& entry : platform::list_directory(directory)) {
            if (platform::lower_case(entry) != name) continue;
            const std::string path = platform::resolve(joined(directory, entry));
            if (path.empty() || !platform::is_directory(path)) continue;
            found.push_back(path);
            for (const std::string& below : platform::list_directory(path)) {
                if (found.size() >= max_usual_directories) return found;
                const std::string deeper = platform::resolve(joined(path, below));
                if (!deeper.empty() && platform::is_directory(deeper)) found.push_back(deeper);
            }
        }
    }
    return found;
}

std::vector<std::string> search_directories(const std::string& start, const std::string& content,
                                            const std::vector<restore::Reference>& references,
                                            const std::vector<std::string>& further)
{
    std::vector<std::string> directories;
    std::unordered_set<std::string> known;
    const auto add = [&](const std::string& directory) {
        if (known.insert(directory).second) directories.push_back(directory);
    };
    add(start);
    add(content);
    Directories stored;
    for (const restore::Reference& reference : references) {
        if (directories.size() >= max_stored_directories) break;
        std::vector<std::string_view> elements = elements_of(reference.stored);
        if (!elements.empty()) elements.pop_back();
        for (std::span<const std::string_view> rest(elements); !rest.empty(); rest = rest.subspan(1)) {
            const std::string& directory = stored.find(content, rest);
            if (directory.empty()) continue;
            add(directory);
            break;
        }
    }
    for (const std::string& below : usual_directories(start)) add(below);
    for (const std::string& below : usual_directories(content)) add(below);
    for (const std::string& directory : further) add(directory);
    return directories;
}

} // namespace host
