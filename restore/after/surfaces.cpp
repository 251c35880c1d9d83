#include <algorithm>
#include <filesystem>
#include <iterator>
#include <string_view>
#include <unordered_map>
#include <unordered_set>

#include "restore/after/object_files.h"
#include "restore/facts/file_head.h"

namespace restore {

namespace {

// Neither an image's nor one of those that the exporter computes.
bool is_lost(std::string_view type)
{
    constexpr std::string_view computed[] = {"Checkerboard", "Grid", "Fractal Noise"};
    return type.find("Image Map") == std::string_view::npos && std::ranges::find(computed, type) == std::end(computed);
}

// Names as the import gave them, in its order: the first of a name keeps it, later ones get " #2" and so on.
class SurfaceNames {
public:
    SurfaceNames(const tv::Scene& scene, bool unique) : scene_(scene), unique_(unique) {}

    // The surface that this one of the next object has become; no_id where there is none of that name.
    tv::Id next(const std::string& name)
    {
        std::size_t& uses = uses_[name];
        ++uses;
        return scene_.find(tv::Kind::surface, !unique_ || uses == 1 ? name : name + " #" + std::to_string(uses));
    }

private:
    const tv::Scene& scene_;
    bool unique_;
    std::unordered_map<std::string, std::size_t> uses_;
};

} // namespace

void put_back_surfaces(tv::Scene& scene, const std::vector<const ObjectFacts*>& objects,
                       const PutBackSettings& settings, PutBack& result)
{
    SurfaceNames names(scene, settings.unique_surfaces);
    for (const ObjectFacts* const facts : objects) {
        std::unordered_map<std::string_view, tv::Id> surfaces;
        for (const std::string& name : facts->surface_names) surfaces.emplace(name, names.next(name));
        for (const SurfaceFacts& surface : facts->surfaces) {
            for (const std::string& type : surface.textures) result.losses.procedural_textures += is_lost(type);
            const auto at = surfaces.find(surface.name);
            if (!surface.double_sided || at == surfaces.end() || at->second == tv::no_id) continue;
            if (!settings.wanted[Restoration::double_sided]) continue;
            scene.surfaces[at->second].double_sided = true;
            result.acted.add(Restoration::double_sided);
        }
    }
}

void put_back_surfaces_of_files(tv::Scene& scene, const PutBackSettings& settings, PutBack& result)
{
    std::unordered_set<std::string_view> seen;
    std::vector<ObjectFacts> facts;
    for (const std::string& path : settings.files) {
        if (path.empty() || !seen.insert(path).second) continue;
        const File file = open_regular(std::filesystem::path(path));
        if (file) facts.push_back(read_object(file.get()));
    }
    std::vector<const ObjectFacts*> objects;
    for (const ObjectFacts& one : facts) objects.push_back(&one);
    put_back_surfaces(scene, objects, settings, result);
}

} // namespace restore
