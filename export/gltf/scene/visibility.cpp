#include "export/gltf/scene/visibility.h"

#include <algorithm>
#include <cmath>
#include <string>

namespace gltf {

namespace {

bool has_effect(const tv::Instance& instance)
{
    return instance.unseen || instance.dissolve.rest > 0 || instance.dissolve.moves() || instance.morph.rest != 0 ||
           instance.morph.moves();
}

double opacity_at(const Track& dissolve, double time)
{
    const double opacity = 1 - value_at(dissolve, time);
    return opacity >= 0 ? std::min(opacity, 1.0) : 0;
}

// The least and the most dissolved that it ever is, by its knots and the frames' worth of places between them.
struct Range {
    double least = HUGE_VAL, most = -HUGE_VAL;
};
Range range_of(const Track& track)
{
    Range range;
    const auto add = [&](double value) {
        range.least = std::min(range.least, value);
        range.most = std::max(range.most, value);
    };
    constexpr int parts = 8;
    for (std::size_t i = 0; i < track.size(); ++i) {
        add(value_at(track, track[i].time));
        if (i + 1 == track.size()) break;
        for (int part = 1; part < parts; ++part)
            add(value_at(track, track[i].time + (track[i + 1].time - track[i].time) * part / parts));
    }
    return range;
}

} // namespace

Visibility::Visibility(const tv::Scene& scene, const std::vector<tv::Placement>& places, Animator& animator)
    : scene_(scene), animator_(animator), effects_(places.size(), tv::no_id)
{
    for (std::size_t i = 1; i < places.size(); ++i) {
        const tv::Instance& instance = scene.instances[places[i].instance];
        if (has_effect(instance))
            effects_[i] = places[i].instance;
        else if (instance.parent_kind == tv::Kind::object)
            effects_[i] = effects_[places[i].parent];
    }
}

const Track& Visibility::dissolve(tv::Id id)
{
    const auto [entry, added] = dissolves_.try_emplace(id);
    const tv::Curve& curve = scene_.instances[id].dissolve;
    if (added) entry->second = animator_.track(curve.channel, curve.rest);
    return entry->second;
}

Showing Visibility::showing(std::size_t place)
{
    Showing showing;
    const tv::Instance* const of = effect(place);
    if (!of) return showing;
    const Track& track = dissolve(effects_[place]);
    if (animator_.still() || is_constant(track)) {
        showing.look.opacity = opacity_at(track, animator_.start_time());
    } else {
        const Range range = range_of(track);
        showing.look.opacity = 1 - std::clamp(range.least, 0.0, 1.0);
        showing.look.fades = effects_[place];
        showing.comes_and_goes = range.most >= 1;
    }
    showing.drawn = !of->unseen && showing.look.opacity > 0;
    return showing;
}

void Visibility::add_coming_and_going(std::size_t place, uint32_t node)
{
    const tv::Id id = effects_[place];
    const auto [entry, added] = steps_.try_emplace(id, none);
    if (added) {
        const Track& track = dissolve(id);
        entry->second = animator_.step_sampler(std::span(&track, 1), Element::vec3,
                                               [&](double time) { return opacity_at(track, time) > 0; });
    }
    animator_.add_channel(AnimationChannel::Path::scale, entry->second, node);
}

void Visibility::add_weights(std::size_t place, uint32_t node_number, Node& node)
{
    const tv::Instance* const of = effect(place);
    if (!of) return;
    const auto [entry, added] = weights_.try_emplace(effects_[place], none);
    const Track track = animator_.track(of->morph.channel, of->morph.rest);
    const auto weight = [&](double time, std::span<double> out) { out[0] = value_at(track, time); };
    if (added) entry->second = animator_.value_sampler(std::span(&track, 1), Element::scalar, weight);
    node.weights = {file_float(value_at(track, animator_.start_time()))};
    animator_.add_channel(AnimationChannel::Path::weights, entry->second, node_number);
}

void animate_fading(const tv::Scene& scene, const std::vector<MaterialMaker::Fader>& faders, Animator& animator,
                    const Tables& tables)
{
    for (const MaterialMaker::Fader& fader : faders) {
        const tv::Curve& curve = scene.instances[fader.fades].dissolve;
        const Track track = animator.track(curve.channel, curve.rest);
        const std::array<double, 4> color = tables.materials[fader.material].base_color;
        const auto values = [&](double time, std::span<double> out) {
            std::copy_n(color.begin(), 3, out.begin());
            out[3] = fader.opacity * opacity_at(track, time);
        };
        animator.add_pointer("/materials/" + std::to_string(fader.material) + "/pbrMetallicRoughness/baseColorFactor",
                             animator.value_sampler(std::span(&track, 1), Element::vec4, values));
    }
}

} // namespace gltf
