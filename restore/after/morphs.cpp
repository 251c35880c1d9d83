#include <algorithm>
#include <filesystem>
#include <list>
#include <optional>
#include <unordered_map>

#include "restore/after/object_files.h"
#include "restore/facts/file_head.h"
#include "restore/facts/geometry.h"

namespace restore {

namespace {

// Points of files, read when first asked for; the few used last are kept.
class Geometries {
public:
    explicit Geometries(const std::vector<std::string>& files) : files_(files) {}

    // Of item number `item`, from 1. Null where it has no file or the file no points. Good until the call after the next.
    const Geometry* of(int32_t item)
    {
        if (item < 1 || static_cast<std::size_t>(item) > files_.size()) return nullptr;
        const std::string& path = files_[static_cast<std::size_t>(item) - 1];
        if (path.empty()) return nullptr;
        const auto at = std::find_if(kept_.begin(), kept_.end(), [&](const Kept& one) { return one.path == path; });
        if (at != kept_.end()) {
            kept_.splice(kept_.begin(), kept_, at);
        } else {
            if (kept_.size() == most_kept) kept_.pop_back();
            const File file = open_regular(std::filesystem::path(path));
            kept_.push_front({path, file ? read_geometry(file.get()) : std::nullopt});
        }
        return kept_.front().geometry ? &*kept_.front().geometry : nullptr;
    }

private:
    static constexpr std::size_t most_kept = 4;
    struct Kept {
        std::string path;
        std::optional<Geometry> geometry;
    };
    const std::vector<std::string>& files_;
    std::list<Kept> kept_;
};

// The target's positions for the points of one primitive, whose points are `points` of the file. Empty where the
// primitive isn't made of these.
std::vector<float> morphed(const tv::Primitive& primitive, const Geometry& from, const Geometry& to,
                           const std::vector<uint32_t>* points)
{
    const std::size_t count = points ? points->size() : from.points.size() / 3;
    if (primitive.positions.size() != count * 3) return {};
    std::vector<float> out;
    out.reserve(count * 3);
    for (std::size_t i = 0; i < count; ++i) {
        const std::size_t at = 3 * (points ? (*points)[i] : i);
        const float* const made = primitive.positions.data() + 3 * i;
        const float* const read = from.points.data() + at;
        if (made[0] != read[0] || made[1] != read[1] || made[2] != -read[2]) return {};
        const float* const goal = to.points.data() + at;
        out.insert(out.end(), {goal[0], goal[1], -goal[2]});
    }
    return out;
}

// The object of an item, or the pieces that it was split into, each with the file's points that it has.
class MorphTargets {
public:
    MorphTargets(tv::Scene& scene, const Geometry& from, const Geometry& to) : scene_(scene), from_(from), to_(to) {}

    // False where they aren't made of the file's points; nothing has a target then.
    bool fill(tv::Id object)
    {
        if (fill_all(object)) return true;
        for (const tv::Id id : filled_) scene_.objects[id].morph_target.clear();
        return false;
    }

private:
    bool fill_all(tv::Id object)
    {
        if (!scene_.objects[object].primitives.empty()) return one(object, nullptr);
        std::size_t surface = 0;
        tv::Id piece = scene_.objects[object].children.first;
        for (; piece != tv::no_id; piece = scene_.instances[piece].next_sibling) {
            while (surface < from_.used.size() && from_.used[surface].empty()) ++surface; // made no piece
            const tv::Id of = scene_.instances[piece].object;
            if (surface == from_.used.size() || of == tv::no_id || !one(of, &from_.used[surface])) return false;
            ++surface;
        }
        return true;
    }

    bool one(tv::Id id, const std::vector<uint32_t>* points)
    {
        tv::Object& object = scene_.objects[id];
        if (object.primitives.size() != 1) return false;
        std::vector<float> positions = morphed(object.primitives[0], from_, to_, points);
        if (positions.empty()) return false;
        filled_.push_back(id);
        object.morph_target = {std::move(positions)};
        return true;
    }

    tv::Scene& scene_;
    const Geometry& from_;
    const Geometry& to_;
    std::vector<tv::Id> filled_;
};

} // namespace

void put_back_morphs(tv::Scene& scene, const SceneFacts& facts, const Matching& matching, const FrameTimes& times,
                     const PutBackSettings& settings, PutBack& result)
{
    if (!settings.wanted[Restoration::morphs]) return;
    Geometries geometries(settings.files);
    std::unordered_map<tv::Id, int32_t> target_of; // of an object: instances share its one target
    for (std::size_t i = 0; i < facts.objects.size(); ++i) {
        const ObjectItem& item = facts.objects[i];
        if (item.morph_target == 0) continue;
        const double amount = item.morph_amount.at(facts.first_frame);
        if (!item.morph_amount.envelope && !(amount > 0)) continue;
        tv::Instance& instance = scene.instances[(*matching.instances)[i].carrier];
        if (instance.object == tv::no_id) continue;
        const auto [known, added] = target_of.try_emplace(instance.object, item.morph_target);
        bool fits = known->second == item.morph_target;
        if (added) {
            const Geometry* const to = geometries.of(item.morph_target);
            const Geometry* const from = geometries.of(static_cast<int32_t>(i) + 1);
            fits = from && to && from->points.size() == to->points.size() &&
                   MorphTargets(scene, *from, *to).fill(instance.object);
            if (!fits) known->second = 0;
        }
        if (!fits) {
            ++result.unfit_morphs;
            continue;
        }
        instance.morph = make_curve(item.morph_amount, amount, times, !settings.first_key_only,
                                    settings.wanted[Restoration::linear_keys]);
        result.acted.add(Restoration::morphs);
    }
}

} // namespace restore
