#include "host/finding/open_watch.h"

#include <algorithm>
#include <filesystem>

#include "host/finding/search_path.h"
#include "lib/platform/files.h"
#include "lib/platform/latin1.h"
#include "lib/platform/memory.h"
#include "lib/platform/text.h"

namespace host {

namespace fs = std::filesystem;

OpenWatch::OpenWatch(std::vector<FileReference>& objects, const std::string& directory)
    : objects_(objects), directory_(directory)
{
    platform::set_open_observer(
        [](void* self, const char* path, const char* opened) {
            platform::noting_short_memory([&] { static_cast<OpenWatch*>(self)->opened(path, opened); });
        },
        this);
}

OpenWatch::~OpenWatch()
{
    platform::set_open_observer(nullptr, nullptr);
}

void OpenWatch::opened(std::string_view path, std::string_view place)
{
    if (std::none_of(path.begin(), path.end(), platform::is_separator)) {
        std::size_t at = next_;
        while (at < objects_.size() && !restore::is_called(objects_[at].reference.stored, path)) ++at;
        if (at < objects_.size()) {
            current_ = &objects_[at];
            current_->reached = true;
            next_ = at + 1;
        }
    }
    if (!current_ || !current_->found.empty()) return;
    note(place.empty() ? platform::shown_name(path) : std::string(place));
    if (!place.empty()) current_->found = absolute(place);
}

void OpenWatch::note(std::string_view path)
{
    constexpr std::size_t max_noted = 200'000;
    std::vector<std::string>& tried = current_->tried;
    std::string place = absolute(path);
    if (++noted_ > max_noted || std::find(tried.begin(), tried.end(), place) != tried.end()) return;
    tried.push_back(std::move(place));
}

std::string OpenWatch::absolute(std::string_view path) const
{
    std::string place(path);
    std::replace(place.begin(), place.end(), '\\', '/');
    const fs::path whole = fs::path(place).has_root_directory() ? fs::path(place) : fs::path(joined(directory_, place));
    return whole.lexically_normal().string();
}

} // namespace host
