#include "export/gltf/material/layer_recipe.h"

#include <algorithm>
#include <cmath>

#include "lib/platform/latin1.h"

namespace gltf {
namespace {

using Modulation = tv::Layer::Modulation;
using Channel = tv::LayerChannel;

const Modulation& of(const tv::Layer& layer, Channel channel)
{
    return layer.channels[static_cast<std::size_t>(channel)];
}

float tame(float x, float otherwise)
{
    return std::isfinite(x) ? std::clamp(x, -1000.0f, 1000.0f) : otherwise;
}

float share(float x, float otherwise) // 0 to 1
{
    return std::isfinite(x) ? std::clamp(x, 0.0f, 1.0f) : otherwise;
}

// A multiplier of 0 would blot out the surface. It comes from files that state no strength, where the programs of the
// time showed the texture at full strength.
std::array<float, 3> multiplier_of(const Modulation& modulation)
{
    if (!modulation.multiplier) return {1, 1, 1};
    const tv::Vec3& m = *modulation.multiplier;
    if (m[0] == 0 && m[1] == 0 && m[2] == 0) return {1, 1, 1};
    return {tame(m[0], 1), tame(m[1], 1), tame(m[2], 1)};
}

double repeats_of(float scale)
{
    return std::isfinite(scale) && std::abs(scale) > 1e-6f ? 1.0 / double{scale} : 1.0;
}

bool acts_on_color(const tv::Layer& layer)
{
    const Modulation& color = of(layer, Channel::color);
    return color.enabled || !color.stated; // a layer is a colour layer until it says otherwise
}

// Adds the step for each target that the layer modulates; `source` holds what they share.
void add_steps(const tv::Layer& layer, const LayerStep& source, std::vector<LayerStep>& steps)
{
    const auto add = [&](LayerTarget target, std::array<float, 3> multiplier, float weight, bool invert = false) {
        LayerStep step = source;
        step.target = target;
        step.multiplier = multiplier;
        step.weight = weight;
        step.invert = invert;
        if (weight > 0 || target == LayerTarget::bump) steps.push_back(std::move(step));
    };
    const auto blend = [&](Channel channel) { return share(of(layer, channel).blend.value_or(1), 1); };
    const auto own = [&](Channel channel) { return 1 - share(of(layer, channel).mix.value_or(0), 0); };

    // The weight of a colour stands at "diffuse", and a luminous layer's at "luminous", as the words come.
    if (acts_on_color(layer))
        add(LayerTarget::color, multiplier_of(of(layer, Channel::color)), blend(Channel::diffuse));
    if (of(layer, Channel::diffuse).enabled)
        add(LayerTarget::diffuse, multiplier_of(of(layer, Channel::diffuse)), own(Channel::diffuse));
    if (of(layer, Channel::luminous_color).enabled)
        add(LayerTarget::emission, multiplier_of(of(layer, Channel::luminous_color)), blend(Channel::luminous));
    else if (of(layer, Channel::luminous).enabled)
        add(LayerTarget::emission, multiplier_of(of(layer, Channel::luminous)), blend(Channel::luminous));
    if (of(layer, Channel::face_opacity).enabled)
        add(LayerTarget::opacity, multiplier_of(of(layer, Channel::face_opacity)), own(Channel::face_opacity),
            of(layer, Channel::face_opacity).invert);
    if (of(layer, Channel::reflect_opacity).enabled)
        add(LayerTarget::specular, multiplier_of(of(layer, Channel::reflect_opacity)), own(Channel::specular));
    else if (of(layer, Channel::specular).enabled)
        add(LayerTarget::specular, multiplier_of(of(layer, Channel::specular)), own(Channel::specular));
    if (of(layer, Channel::bump).enabled) {
        const auto height = [&](Channel channel) {
            const std::optional<tv::Vec3>& m = of(layer, channel).multiplier;
            return m ? tame((*m)[0], 0) : tame(multiplier_of(of(layer, Channel::bump))[0], 1);
        };
        add(LayerTarget::bump, {height(Channel::bump_u), height(Channel::bump_v), 0}, 1);
    }
}

// What the layer's texture is. Nothing where it can't show.
std::optional<LayerStep> source_of(const tv::Scene& scene, const tv::Layer& layer, const std::string& surface,
                                   ImageStore& store, NoteBook& notes)
{
    if (!layer.enabled) return std::nullopt;
    const tv::Id id = layer.texture != tv::no_id || layer.texture_name.empty()
                          ? layer.texture
                          : scene.find(tv::Kind::texture, layer.texture_name);
    if (id >= scene.textures.size() || !scene.textures[id].alive) {
        if (!layer.texture_name.empty())
            notes.tell(message<"texture-without-picture">(surface, platform::latin1_to_utf8(layer.texture_name)));
        return std::nullopt;
    }
    const tv::Texture& texture = scene.textures[id];
    if (!texture.enabled) return std::nullopt;
    LayerStep step;
    if (texture.kind == tv::TextureKind::image) {
        step.image = store.open(texture.file_name, surface);
        if (!step.image) return std::nullopt;
        step.repeats = {repeats_of(layer.uscale), repeats_of(layer.vscale)};
        step.wrap_u = texture.wrap_u;
        step.wrap_v = texture.wrap_v;
        step.mipmap = texture.mipmap;
        return step;
    }
    if (texture.kind != tv::TextureKind::procedural) return std::nullopt;
    step.procedural = make_procedural(texture, layer);
    if (step.procedural) return step;
    notes.tell(message<"procedural-unknown">(surface, platform::latin1_to_utf8(texture.name)));
    return std::nullopt;
}

PlainSurface plain_of(const tv::Surface& surface)
{
    PlainSurface plain;
    for (std::size_t i = 0; i < 3; i++) plain.color[i] = share(surface.color[i], 1);
    plain.diffuse = share(surface.diffuse, 1);
    plain.opacity = share(surface.face_opacity, 1);
    plain.luminous = share(surface.luminous, 0);
    plain.specular = share(surface.specular, 0);
    return plain;
}

bool hides_what_is_below(const LayerStep& step)
{
    return step.target != LayerTarget::bump && step.weight >= 1 && (step.procedural || (step.wrap_u && step.wrap_v));
}

} // namespace

SurfaceRecipe make_recipe(const tv::Scene& scene, const tv::Surface& surface, ImageStore& store, NoteBook& notes)
{
    SurfaceRecipe recipe;
    recipe.plain = plain_of(surface);
    const std::string name = platform::latin1_to_utf8(surface.name);
    std::size_t shown = 0;
    for (const tv::Layer& layer : surface.layers) {
        if (!layer.enabled) continue;
        if (shown == most_layers) {
            notes.tell(message<"layers-too-many">(name, most_layers, most_layers));
            break;
        }
        shown++;
        const std::optional<LayerStep> source = source_of(scene, layer, name, store, notes);
        if (!source) continue;
        recipe.has_procedural = recipe.has_procedural || source->procedural;
        add_steps(layer, *source, recipe.steps);
    }
    return recipe;
}

std::vector<LayerStep> steps_of(const SurfaceRecipe& recipe, const std::vector<LayerTarget>& targets)
{
    std::vector<LayerStep> chosen;
    for (const LayerStep& step : recipe.steps) {
        if (std::find(targets.begin(), targets.end(), step.target) == targets.end()) continue;
        if (hides_what_is_below(step))
            std::erase_if(chosen, [&](const LayerStep& before) { return before.target == step.target; });
        chosen.push_back(step);
    }
    return chosen;
}

} // namespace gltf
