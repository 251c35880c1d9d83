#include "restore/after/lights.h"

#include <algorithm>
#include <cmath>

namespace restore {

namespace {

constexpr double full_byte = 255; // of a colour's component

// Of all keys, for a light that starts dark. Splines may go beyond their keys, but not far.
double largest(const Number& number)
{
    if (!number.envelope) return number.value;
    const auto& values = number.envelope->values;
    return values.empty() ? number.value : *std::max_element(values.begin(), values.end());
}

double smallest(const Number& number)
{
    if (!number.envelope) return number.value;
    const auto& values = number.envelope->values;
    return values.empty() ? number.value : *std::min_element(values.begin(), values.end());
}

bool changes(const Number& number)
{
    return number.envelope && largest(number) != smallest(number);
}

class LightRestorer {
public:
    LightRestorer(const SceneFacts& facts, const Matching& matching, const FrameTimes& times,
                  const PutBackSettings& settings, PutBack& result)
        : facts_(facts), matching_(matching), times_(times), settings_(settings), result_(result)
    {
    }

    void restore(tv::Light& light, const LightItem& item)
    {
        name(light, item);
        place(light, item);
        intensity(light, item);
        colour(light, item);
        cone(light, item);
        reach(light, item);
        if (item.type == static_cast<int32_t>(LightType::linear) ||
            item.type == static_cast<int32_t>(LightType::area)) {
            if (wanted(Restoration::area_lights)) light.model = tv::LightModel::point;
        }
        if (item.lens_flare) light.extras.push_back({"flareIntensity", {item.flare_intensity.at(facts_.first_frame)}});
    }

private:
    // Counts it where it is wanted.
    bool wanted(Restoration restoration)
    {
        if (!settings_.wanted[restoration]) return false;
        result_.acted.add(restoration);
        return true;
    }
    bool linear() const { return settings_.wanted[Restoration::linear_keys]; }
    bool moving() const { return !settings_.first_key_only; }

    void name(tv::Light& light, const LightItem& item)
    {
        if (settings_.wanted[Restoration::whole_names]) light.shown_name = item.name;
    }

    void place(tv::Light& light, const LightItem& item)
    {
        const tv::Id parent = matching_.item(item.parent()), target = matching_.item(item.target.item);
        if (item.parent() != 0 && parent == tv::no_id) ++result_.bad_parents;
        if (item.target.item != 0 && target == tv::no_id) ++result_.bad_targets;
        const bool moves = moving() && item.motion.keys.size() > 1;
        const bool has_motion = moves && wanted(Restoration::light_motions);
        const bool has_parent = parent != tv::no_id && wanted(Restoration::light_parents);
        const bool has_target = target != tv::no_id && wanted(Restoration::targets);
        if (!has_motion && !has_parent && !has_target) return;
        tv::Rig rig = make_rig(item, times_, {.moving = has_motion, .linear = linear()});
        if (has_parent) rig.parent = parent;
        if (has_target) rig.target = target;
        light.rig = std::move(rig);
    }

    void intensity(tv::Light& light, const LightItem& item)
    {
        const bool dark = largest(item.intensity) == 0 && smallest(item.intensity) == 0;
        if (dark && wanted(Restoration::dark_lights)) light.intensity_curve = tv::Curve{};
        if (dark || !item.intensity.envelope) return;
        if (!wanted(Restoration::light_envelopes)) return;
        double rest = item.intensity.at(facts_.first_frame);
        if (rest == 0) rest = largest(item.intensity);
        light.intensity_curve = make_curve(item.intensity, rest, times_, moving() && changes(item.intensity), linear());
    }

    void colour(tv::Light& light, const LightItem& item)
    {
        if (!item.colour.envelope || !wanted(Restoration::light_envelopes)) return;
        const std::array<double, 3> rest = item.colour.at(facts_.first_frame);
        std::array<tv::Curve, 3> curves;
        for (std::size_t i = 0; i < 3; ++i) {
            curves[i].rest = rest[i] / full_byte;
            if (moving() && item.colour.envelope->keys.size() > 1)
                curves[i].channel = make_channel(*item.colour.envelope, i, 1 / full_byte, times_, linear());
        }
        light.color_curve = std::move(curves);
    }

    void cone(tv::Light& light, const LightItem& item)
    {
        const auto curve = [&](const Number& number, std::optional<tv::Curve>& out) {
            if (number.envelope && wanted(Restoration::light_envelopes))
                out = make_curve(number, number.at(facts_.first_frame), times_, moving() && changes(number), linear());
        };
        curve(item.cone_angle, light.cutoff_curve);
        curve(item.edge_angle, light.delta_curve);
    }

    void reach(tv::Light& light, const LightItem& item)
    {
        if (item.type == static_cast<int32_t>(LightType::distant)) return; // shines everywhere alike
        const double range = item.range.at(facts_.first_frame), falloff = item.falloff.at(facts_.first_frame);
        const double reach = range > 0 ? range : falloff > 0 ? 1 / falloff : 0;
        if (reach > 0 && std::isfinite(reach) && wanted(Restoration::light_range)) light.range = reach;
    }

    const SceneFacts& facts_;
    const Matching& matching_;
    const FrameTimes& times_;
    const PutBackSettings& settings_;
    PutBack& result_;
};

} // namespace

void put_back_lights(tv::Scene& scene, const SceneFacts& facts, const Matching& matching, const FrameTimes& times,
                     const PutBackSettings& settings, PutBack& result)
{
    LightRestorer restorer(facts, matching, times, settings, result);
    for (std::size_t i = 0; i < facts.lights.size(); ++i)
        restorer.restore(scene.lights[(*matching.lights)[i]], facts.lights[i]);
}

} // namespace restore
