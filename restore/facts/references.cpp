#include "restore/facts/references.h"

#include <algorithm>

#include "lib/platform/text.h"
#include "restore/facts/file_head.h"
#include "restore/facts/scene_reader.h"

namespace restore {

static constexpr std::size_t longest_stored = 255; // bytes of a path that the importer keeps

static std::string stored_path(const std::string& text)
{
    return text.substr(0, longest_stored);
}

std::vector<Reference> references_of(const SceneFacts& scene)
{
    std::vector<Reference> found;
    for (const ObjectItem& object : scene.objects)
        if (!object.is_null && !object.stored.empty())
            found.push_back({ReferenceKind::object, stored_path(object.stored), "", object.line});
    for (const SceneImage& image : scene.images)
        if (image.is_backdrop && !platform::equal_in_any_case(image.stored, "(none)"))
            found.push_back({ReferenceKind::image, stored_path(image.stored), "", image.line});
    std::stable_sort(found.begin(), found.end(),
                     [](const Reference& a, const Reference& b) { return a.line < b.line; });
    if (found.size() > max_references) found.resize(max_references);
    return found;
}

std::vector<Reference> references_of(const ObjectFacts& object)
{
    std::vector<Reference> found;
    for (const ImageUse& image : object.images) found.push_back({ReferenceKind::image, image.stored, image.surface, 0});
    return found;
}

std::vector<Reference> references_of_scene(const std::filesystem::path& path)
{
    const File file = open_regular(path);
    return file ? references_of(read_scene(file.get())) : std::vector<Reference>();
}

std::vector<Reference> references_of_object(const std::filesystem::path& path)
{
    const File file = open_regular(path);
    return file ? references_of(read_object(file.get())) : std::vector<Reference>();
}

bool is_called(std::string_view stored, std::string_view name)
{
    const std::string_view last = platform::last_element(stored);
    if (platform::equal_in_any_case(last, name)) return true;
    if (last.size() != name.size() || last.size() < 4) return false;
    const std::size_t stem = last.size() - 4;
    return last[stem] == '.' && name.substr(stem) == ".iff" &&
           platform::equal_in_any_case(last.substr(0, stem), name.substr(0, stem));
}

} // namespace restore
