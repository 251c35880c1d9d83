#include "restore/after/surroundings.h"

#include <algorithm>
#include <cmath>

namespace restore {

namespace {

// The frame of the last key of all motions and envelopes; 0 where none comes later.
class LastKey {
public:
    explicit LastKey(const SceneFacts& facts)
    {
        for (const ObjectItem& item : facts.objects) {
            take(item.motion);
            take(item.dissolve);
            take(item.morph_amount);
        }
        for (const LightItem& item : facts.lights) {
            take(item.motion);
            take(item.intensity);
            take(item.cone_angle);
            take(item.edge_angle);
            if (item.colour.envelope) take(*item.colour.envelope);
        }
        take(facts.camera.motion);
        take(facts.camera.zoom);
    }
    double frame() const { return frame_; }

private:
    void take(const Curve& curve)
    {
        if (!curve.keys.empty()) frame_ = std::max(frame_, curve.keys.back().frame);
    }
    void take(const Number& number)
    {
        if (number.envelope) take(*number.envelope);
    }
    double frame_ = 0;
};

// The file's range of frames; where that is a single one and keys go on, or where all keys are asked for, from frame 0
// to the last key.
tv::Clip clip_of(const SceneFacts& facts, bool all_keys)
{
    tv::Clip clip;
    clip.rate = facts.frames_per_second > 0 ? facts.frames_per_second : clip.rate;
    clip.first_frame = facts.first_frame;
    clip.last_frame = std::max(facts.first_frame, facts.last_frame);
    const double last_key = LastKey(facts).frame();
    const bool single = clip.first_frame == clip.last_frame && last_key > clip.last_frame;
    if (all_keys || single) {
        clip.first_frame = 0;
        clip.last_frame = last_key;
    }
    return clip;
}

double byte_part(double component)
{
    return std::clamp(component / 255, 0.0, 1e6);
}

void put_back_ambient(tv::Scene& scene, const SceneFacts& facts, PutBack& result)
{
    double intensity = facts.ambient_intensity.at(facts.first_frame);
    if (intensity == 0 && facts.ambient_intensity.envelope) {
        const auto& values = facts.ambient_intensity.envelope->values;
        if (!values.empty()) intensity = *std::max_element(values.begin(), values.end());
    }
    if (!(intensity > 0) || !std::isfinite(intensity)) return;
    const std::array<double, 3> color = facts.ambient_colour.at(facts.first_frame);
    tv::Ambient ambient;
    ambient.intensity = intensity;
    for (std::size_t i = 0; i < 3; ++i) ambient.color[i] = static_cast<float>(byte_part(color[i]));
    scene.ambient = ambient;
    result.acted.add(Restoration::ambient);
}

} // namespace

void put_back_surroundings(tv::Scene& scene, const SceneFacts& facts, const PutBackSettings& settings, PutBack& result)
{
    if (settings.wanted[Restoration::time_line] && !settings.first_key_only) {
        scene.clip = clip_of(facts, settings.all_keys);
        result.acted.add(Restoration::time_line);
    }
    if (facts.ambient_intensity.given && settings.wanted[Restoration::ambient]) put_back_ambient(scene, facts, result);
    if (facts.fog.type == 0) return;
    const double frame = facts.first_frame;
    const std::array<double, 3> color = facts.fog.colour.at(frame);
    scene.extras.push_back({"fogType", {static_cast<double>(facts.fog.type)}});
    scene.extras.push_back({"fogDistances", {facts.fog.nearest.at(frame), facts.fog.farthest.at(frame)}});
    scene.extras.push_back({"fogAmounts", {facts.fog.least.at(frame), facts.fog.most.at(frame)}});
    scene.extras.push_back({"fogColor", {byte_part(color[0]), byte_part(color[1]), byte_part(color[2])}});
}

bool Losses::any() const
{
    return negative_lights + lens_flares + fogs + displacements + clip_maps + bones + path_alignments + motion_blurs +
               depth_of_field + procedural_textures !=
           0;
}

Losses losses_of(const SceneFacts& facts)
{
    Losses losses;
    for (const ObjectItem& item : facts.objects) {
        losses.displacements += item.displaced;
        losses.clip_maps += item.clip_mapped;
        losses.path_alignments += item.aligned_to_path;
        losses.bones += item.bones;
    }
    for (const LightItem& item : facts.lights) {
        losses.lens_flares += item.lens_flare;
        const auto& envelope = item.intensity.envelope;
        losses.negative_lights += envelope ? std::any_of(envelope->values.begin(), envelope->values.end(),
                                                         [](double value) { return value < 0; })
                                           : item.intensity.value < 0;
    }
    losses.fogs = facts.fog.type != 0;
    losses.motion_blurs = facts.camera.motion_blur;
    losses.depth_of_field = facts.camera.depth_of_field;
    return losses;
}

} // namespace restore
