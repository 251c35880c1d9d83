#include "host/path_display.h"

#include <string_view>

#include "host/progress.h"
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

std::string places_text(const std::vector<std::string>& tried, std::size_t most)
{
    std::string text = "  looked for:";
    std::size_t lines = 0;
    std::string_view stem; // of the last line
    for (const std::string& place : tried) {
        const std::string_view this_stem = without_object_extension(place);
        if (lines > 0 && this_stem == stem) { // the same place with another extension
            if (lines <= most && this_stem.size() < place.size()) text += ", " + place.substr(stem.size());
            continue;
        }
        stem = this_stem;
        if (++lines <= most) text += "\n    " + shown_path(place);
    }
    if (lines > most)
        text += "\n    and in " + counted(lines - most, "more place", "more places") + " (lwimport find lists all)";
    return text;
}

} // namespace host
