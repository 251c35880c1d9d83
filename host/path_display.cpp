#include "host/path_display.h"

#include <string_view>

#include "lib/import/lw/base/object_extensions.h"
#include "lib/platform/latin1.h"

namespace host {

std::string shown_path(const std::filesystem::path& path)
{
    return platform::shown_name(path.string());
}

static std::string_view without_object_extension(std::string_view place)
{
    for (const std::string_view extension : lw_object_extensions)
        if (place.ends_with(extension)) return place.substr(0, place.size() - extension.size());
    return place;
}

PlaceLines place_lines(const std::vector<std::string>& tried, std::size_t most)
{
    PlaceLines places;
    std::string_view stem; // of the last line
    bool shown = false;    // the last line is among the first `most`
    for (const std::string& place : tried) {
        const std::string_view this_stem = without_object_extension(place);
        if (&place != &tried.front() && this_stem == stem) {
            if (shown && this_stem.size() < place.size()) places.lines.back() += ", " + place.substr(stem.size());
            continue;
        }
        stem = this_stem;
        shown = places.lines.size() < most;
        if (shown)
            places.lines.push_back(shown_path(place));
        else
            ++places.more;
    }
    return places;
}

} // namespace host
