#include "host/finding/named_files.h"

#include <unordered_map>
#include <unordered_set>

#include "export/gltf/image/image_search.h"
#include "lib/platform/latin1.h"
#include "lib/platform/text.h"
#include "lib/toolkit/scene/scene.h"

namespace host {

namespace fs = std::filesystem;

std::string file_key(const restore::Reference& reference)
{
    return platform::lower_case(platform::last_element(reference.stored));
}

static messages::Where who_asks(const fs::path& file, const restore::Reference& reference)
{
    messages::Where where{platform::shown_name(file.filename().string()), reference.line, std::nullopt};
    if (reference.line == 0) where.surface = platform::latin1_to_utf8(reference.surface);
    return where;
}

std::vector<FileReference> named_objects(const fs::path& scene, const std::vector<restore::Reference>& references)
{
    std::vector<FileReference> objects;
    for (const restore::Reference& reference : references)
        if (reference.kind == restore::ReferenceKind::object)
            objects.push_back({reference, who_asks(scene, reference), "", {}, false});
    return objects;
}

void follow_repetitions(NamedFiles& files, bool whole)
{
    std::unordered_map<std::string, const FileReference*> first;
    std::unordered_set<std::string> missing;
    std::size_t last_reached = 0;
    for (std::size_t i = 0; i < files.objects.size(); ++i)
        if (files.objects[i].reached) last_reached = i + 1;
    if (whole) last_reached = files.objects.size();
    for (std::size_t i = 0; i < files.objects.size(); ++i) {
        FileReference& object = files.objects[i];
        const auto [known, is_new] = first.try_emplace(file_key(object.reference), &object);
        if (!object.reached && i < last_reached && !is_new && known->second->reached) {
            object.reached = true;
            object.found = known->second->found;
        }
        if (object.is_missing()) missing.insert(known->first);
    }
    files.distinct_objects = first.size();
    files.missing_objects = missing.size();
}

void collect_images(NamedFiles& files, const fs::path& input, const std::vector<restore::Reference>& references)
{
    const auto add = [&files](const fs::path& file, const restore::Reference& reference) {
        if (files.images.size() >= restore::max_references) return;
        files.images.push_back({reference, who_asks(file, reference), "", {}, true});
    };
    for (const restore::Reference& reference : references)
        if (reference.kind == restore::ReferenceKind::image) add(input, reference);
    std::unordered_set<std::string> scanned;
    for (const FileReference& object : files.objects)
        if (!object.found.empty() && scanned.insert(object.found).second)
            for (const restore::Reference& reference : restore::references_of_object(object.found))
                add(object.found, reference);
}

void locate_images(NamedFiles& files, const std::vector<std::string>& directories)
{
    std::unordered_map<std::string, gltf::ImagePlace> known;
    for (FileReference& image : files.images) {
        // By the name that the scene has for it, which may bear another extension.
        std::string name(platform::last_element(image.reference.stored));
        for (const tv::Texture& texture : tv::scene().textures)
            if (texture.kind == tv::TextureKind::image &&
                restore::is_called(image.reference.stored, texture.file_name)) {
                name = texture.file_name;
                break;
            }
        auto place = known.find(name);
        if (place == known.end()) place = known.emplace(name, gltf::find_image(name, directories)).first;
        image.found = place->second.path;
        image.tried = place->second.tried;
    }
}

} // namespace host
