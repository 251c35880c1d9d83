#include "restore/after/matching.h"

#include <algorithm>
#include <string>
#include <string_view>

#include "lib/platform/text.h"

namespace restore {

namespace {

// The toolkit's name of a thing that was to be called `name`: that, or with " #2" and so on behind it. Names are cut
// where they don't fit, and objects lose what stands behind their last dot.
bool is_name_of(std::string_view made, std::string_view name)
{
    const auto unnumbered = [](std::string_view text) { return text.substr(0, text.rfind(" #")); };
    std::string_view stem = unnumbered(made);
    // Of an object that is loaded again the toolkit numbers the object's name, which may have a number already.
    std::string_view object = unnumbered(stem);
    constexpr std::string_view group = " (from object file)";
    for (std::string_view* const text : {&stem, &object})
        if (text->ends_with(group)) text->remove_suffix(group.size());
    constexpr std::size_t longest = 200; // bytes compared; names hold 255 with their suffix
    const auto fits = [&](std::string_view base) {
        return platform::equal_in_any_case(base.substr(0, longest), name.substr(0, longest));
    };
    return fits(made) || fits(stem) || fits(object);
}

// A null's or light's operand is one token or the line, an object's the last element of its path, perhaps without what
// follows the last dot. Blanks may have been folded by the way the importer reads tokens.
bool may_be(std::string_view made, std::string_view stored, bool is_path)
{
    if (is_path) {
        const std::string_view last = platform::last_element(stored);
        return is_name_of(made, last) || is_name_of(made, last.substr(0, last.rfind('.'))) || last.empty();
    }
    return is_name_of(made, stored) || is_name_of(made, stored.substr(0, stored.find(' ')));
}

// The group that the whole scene hangs under: the first instance after "world".
tv::Id root_of(const tv::Scene& scene)
{
    return scene.instances.size() > 1 && scene.instances[1].alive ? scene.instances[1].object : tv::no_id;
}

// The group that was put round an item: made after all items, with the item as its first child.
bool wrap(const tv::Scene& scene, tv::Id group, std::vector<Matching::Item>& items)
{
    const tv::Id inside = scene.instances[group].children.first;
    const auto item = std::lower_bound(items.begin(), items.end(), inside,
                                       [](const Matching::Item& one, tv::Id id) { return one.carrier < id; });
    if (item == items.end() || item->carrier != inside || item->mover != item->carrier) return false;
    item->mover = group;
    return scene.instances[group].name.starts_with(scene.instances[inside].name);
}

std::optional<std::vector<Matching::Item>> match_instances(const tv::Scene& scene, const SceneFacts& facts,
                                                           const std::vector<std::string>& given_names)
{
    const tv::Id root = root_of(scene);
    std::vector<Matching::Item> found; // carriers rise
    found.reserve(facts.objects.size());
    for (tv::Id id = 2; id < scene.instances.size(); ++id) {
        const tv::Instance& instance = scene.instances[id];
        // Pieces of an object that was split hang below that object, items below the root or one another.
        const bool piece = instance.parent_kind == tv::Kind::object && instance.parent != root;
        if (!instance.alive || piece) continue;
        const std::size_t number = found.size();
        if (number == facts.objects.size()) {
            if (!wrap(scene, id, found)) return std::nullopt;
            continue;
        }
        const ObjectItem& item = facts.objects[number];
        const bool given = number < given_names.size() && !given_names[number].empty();
        const std::string_view stored = given          ? std::string_view(given_names[number])
                                        : item.is_null ? item.name
                                                       : item.stored;
        if (!may_be(instance.name, stored, !item.is_null)) return std::nullopt;
        found.push_back({id, id});
    }
    if (found.size() != facts.objects.size()) return std::nullopt;
    return found;
}

std::optional<std::vector<tv::Id>> match_lights(const tv::Scene& scene, const SceneFacts& facts)
{
    std::vector<tv::Id> found;
    for (tv::Id id = 1; id < scene.lights.size(); ++id) {
        if (!scene.lights[id].alive) continue;
        if (found.size() == facts.lights.size()) return std::nullopt;
        if (!may_be(scene.lights[id].name, facts.lights[found.size()].name, false)) return std::nullopt;
        found.push_back(id);
    }
    if (found.size() != facts.lights.size()) return std::nullopt;
    return found;
}

} // namespace

Matching match(const tv::Scene& scene, const SceneFacts& facts, const std::vector<std::string>& given_names)
{
    Matching result;
    result.instances = match_instances(scene, facts, given_names);
    result.lights = match_lights(scene, facts);
    for (tv::Id id = 0; id < scene.cameras.size(); ++id)
        if (scene.cameras[id].alive && !facts.camera.motion.keys.empty()) result.camera = id;
    return result;
}

} // namespace restore
