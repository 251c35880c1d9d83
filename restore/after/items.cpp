#include "restore/after/items.h"

#include <algorithm>
#include <string>
#include <unordered_map>

#include "lib/import/lw/base/object_extensions.h"
#include "lib/platform/text.h"

namespace restore {

namespace {

// The name as people know the thing: of an object the file's, without a directory and an object's extension.
std::string shown_name(const ObjectItem& item)
{
    if (item.is_null) return item.name;
    std::string_view last = platform::last_element(item.stored);
    for (const std::string_view extension : lw_object_extensions)
        if (last.size() > extension.size() && platform::ends_in_any_case(last, extension)) {
            last.remove_suffix(extension.size());
            break;
        }
    return std::string(last);
}

// Adds " #2" and so on to a name that was there before.
class Numbering {
public:
    std::string unique(std::string name)
    {
        const std::size_t number = ++used_[name];
        if (number > 1) name += " #" + std::to_string(number);
        return name;
    }

private:
    std::unordered_map<std::string, std::size_t> used_;
};

} // namespace

void put_back_items(tv::Scene& scene, const SceneFacts& facts, const Matching& matching, const FrameTimes& times,
                    const PutBackSettings& settings, PutBack& result)
{
    const Wanted& wanted = settings.wanted;
    const bool linear = wanted[Restoration::linear_keys], moving = !settings.first_key_only;
    Numbering numbering;
    for (std::size_t i = 0; i < facts.objects.size(); ++i) {
        const ObjectItem& item = facts.objects[i];
        const Matching::Item& made = (*matching.instances)[i];
        tv::Instance &mover = scene.instances[made.mover], &carrier = scene.instances[made.carrier];
        if (wanted[Restoration::whole_names]) {
            const std::string name = shown_name(item);
            if (made.mover != made.carrier) carrier.shown_name = name + " geometry";
            mover.shown_name = numbering.unique(name);
            mover.stored_path = item.stored;
            if (carrier.object != tv::no_id && scene.objects[carrier.object].shown_name.empty())
                scene.objects[carrier.object].shown_name = name;
            result.acted.add(Restoration::whole_names);
        }
        if (item.parent() != 0 && matching.item(item.parent()) == tv::no_id) ++result.bad_parents;
        if (linear && moving && mover.channels)
            result.acted.add(Restoration::linear_keys, mark_linear(*mover.channels, item.motion, times));
        if (item.target.item != 0 && wanted[Restoration::targets]) {
            mover.target = matching.item(item.target.item);
            if (mover.target == tv::no_id)
                ++result.bad_targets;
            else
                result.acted.add(Restoration::targets);
        }
        const double dissolved = item.dissolve.at(facts.first_frame);
        if (item.dissolve.given && (dissolved > 0 || item.dissolve.envelope) && wanted[Restoration::dissolves]) {
            carrier.dissolve = make_curve(item.dissolve, std::clamp(dissolved, 0.0, 1.0), times, moving, linear);
            result.acted.add(Restoration::dissolves);
        }
        if (item.unseen_by_camera && wanted[Restoration::unseen]) {
            carrier.unseen = true;
            result.acted.add(Restoration::unseen);
        }
    }
}

void put_back_camera(tv::Scene& scene, const SceneFacts& facts, const Matching& matching, const FrameTimes& times,
                     const PutBackSettings& settings, PutBack& result)
{
    if (matching.camera == tv::no_id) return;
    const CameraItem& item = facts.camera;
    tv::Camera& camera = scene.cameras[matching.camera];
    const Wanted& wanted = settings.wanted;
    const bool linear = wanted[Restoration::linear_keys], moving = !settings.first_key_only;

    const tv::Id parent = matching.item(item.parent()), target = matching.item(item.target.item);
    if (item.parent() != 0 && parent == tv::no_id) ++result.bad_parents;
    if (item.target.item != 0 && target == tv::no_id) ++result.bad_targets;
    const bool aimed = target != tv::no_id && wanted[Restoration::targets];
    if (aimed || wanted[Restoration::camera_angles]) {
        tv::Rig rig = make_rig(item, times, {.moving = moving, .linear = linear});
        if (wanted[Restoration::camera_angles]) {
            rig.parent = parent;
            result.acted.add(Restoration::camera_angles);
        }
        if (aimed) {
            rig.target = target;
            result.acted.add(Restoration::targets);
        }
        camera.rig = std::move(rig);
    }
    if (item.zoom.envelope && wanted[Restoration::zoom]) {
        camera.zoom = make_curve(item.zoom, item.zoom.at(facts.first_frame), times, moving, linear);
        result.acted.add(Restoration::zoom);
    }
}

} // namespace restore
