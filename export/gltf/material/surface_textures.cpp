#include "export/gltf/material/surface_textures.h"

#include <algorithm>
#include <map>
#include <unordered_map>

#include "export/gltf/base/byte_key.h"
#include "export/gltf/image/image_png.h"
#include "export/gltf/image/image_store.h"
#include "export/gltf/material/layer_compose.h"
#include "export/gltf/material/layer_recipe.h"
#include "export/gltf/material/projection_uv.h"
#include "lib/platform/latin1.h"

namespace gltf {
namespace {

// Mixed pictures are made for each surface (and for procedurals for each projection), so that their number follows the
// scene and not its files. Beyond these limits they get coarser, and projections share one; the report says so.
constexpr uint64_t fine_pixels = uint64_t{1} << 30;
constexpr uint32_t coarse_side = 256;
constexpr std::size_t most_frames = 32; // of one surface

bool has(const std::vector<LayerStep>& steps, LayerTarget target)
{
    return std::any_of(steps.begin(), steps.end(), [&](const LayerStep& step) { return step.target == target; });
}

} // namespace

struct SurfaceTextureMaker::State {
    struct Entry {
        std::string name; // UTF-8
        SurfaceRecipe recipe;
        bool ends = false;                           // an image doesn't wrap, so that `inside` makes a difference
        std::map<std::string, SurfaceTextures> made; // by what tells them apart
        std::size_t frames = 0;
        const SurfaceTextures* first = nullptr;
    };

    State(const tv::Scene& the_scene, const Options& the_options, Report& report)
        : scene(the_scene), options(the_options), notes(report), store(options, notes)
    {
        options.max_texture = std::max(options.max_texture, 1u);
    }

    const tv::Scene& scene;
    Options options;
    NoteBook notes;
    ImageStore store;
    std::unordered_map<tv::Id, Entry> surfaces;
    std::unordered_map<tv::Id, SurfaceTextures> without_frame;
    std::unordered_map<std::string, std::shared_ptr<const EncodedImage>> baked; // by recipe
    uint64_t baked_pixels = 0;
    SurfaceTextures nothing;

    Entry& entry(tv::Id id)
    {
        const auto [found, added] = surfaces.try_emplace(id);
        Entry& entry = found->second;
        if (!added) return entry;
        entry.name = platform::latin1_to_utf8(scene.surfaces[id].name);
        entry.recipe = make_recipe(scene, scene.surfaces[id], store, notes);
        for (const LayerStep& step : entry.recipe.steps)
            if (step.image && (!step.wrap_u || !step.wrap_v)) entry.ends = true;
        return entry;
    }

    void add_environment(const tv::Surface& surface, SurfaceTextures& textures)
    {
        if (!surface.environment_enabled || surface.environment >= scene.textures.size()) return;
        const tv::Texture& texture = scene.textures[surface.environment];
        if (!texture.alive || texture.kind != tv::TextureKind::image) return;
        ImageFile* const file = store.open(texture.file_name, platform::latin1_to_utf8(surface.name));
        if (!file) return;
        textures.environment = store.encoded(*file);
        textures.environment_name = platform::latin1_to_utf8(texture.file_name);
    }

    std::shared_ptr<const EncodedImage> bake(SlotKind kind, const SlotPlan& plan, const Entry& entry,
                                             const tv::TextureProjection& frame)
    {
        std::shared_ptr<const EncodedImage>& known = baked[recipe_key(kind, plan, entry.recipe.plain, frame)];
        if (known) return known;
        const std::optional<Pixels> pixels = compose(kind, plan, entry.recipe.plain, frame, store);
        if (!pixels) return nullptr;
        baked_pixels += uint64_t{pixels->width} * pixels->height;
        static constexpr std::array<const char*, 4> kinds = {"base color", "emission", "specular", "normal"};
        auto image = std::make_shared<EncodedImage>();
        image->name = entry.name + " " + kinds[static_cast<std::size_t>(kind)];
        image->mime = "image/png";
        image->width = pixels->width;
        image->height = pixels->height;
        image->has_alpha = any_alpha(*pixels);
        image->bytes = encode_png(*pixels);
        return known = std::move(image);
    }

    std::optional<TextureSlot> slot(SlotKind kind, std::vector<LayerStep> steps, const Entry& entry,
                                    const tv::TextureProjection& frame, bool inside)
    {
        if (steps.empty()) return std::nullopt;
        uint32_t longest = options.max_texture;
        SlotPlan plan = plan_slot(steps, longest, inside);
        TextureSlot made;
        if (ImageFile* const file = image_as_it_is(plan)) {
            made.image = store.encoded(*file);
        } else {
            if (baked_pixels > fine_pixels && longest > coarse_side) {
                notes.tell(message<"textures-coarse">(coarse_side));
                plan = plan_slot(std::move(steps), coarse_side, inside);
            }
            made.image = bake(kind, plan, entry, frame);
        }
        if (!made.image) return std::nullopt;
        made.repeat_u = plan.repeat_u;
        made.repeat_v = plan.repeat_v;
        made.mipmap = plan.mipmap;
        made.uv_scale = plan.uv_scale;
        made.uv_offset = plan.uv_offset;
        return made;
    }

    SurfaceTextures make(const tv::Surface& surface, const Entry& entry, const tv::TextureProjection& frame,
                         bool inside)
    {
        SurfaceTextures made;
        const auto steps = [&](std::vector<LayerTarget> targets) { return steps_of(entry.recipe, targets); };
        const std::vector<LayerStep> base = steps({LayerTarget::color, LayerTarget::diffuse, LayerTarget::opacity});
        made.base_color = slot(SlotKind::base, base, entry, frame, inside);
        if (made.base_color) {
            made.base_color_replaces = true;
            made.diffuse_replaces = has(base, LayerTarget::diffuse);
            made.alpha = has(base, LayerTarget::opacity);
        }
        made.emissive = slot(SlotKind::emission, steps({LayerTarget::emission}), entry, frame, inside);
        made.emissive_replaces = made.emissive.has_value();
        made.normal = slot(SlotKind::normal, steps({LayerTarget::bump}), entry, frame, inside);
        made.specular = slot(SlotKind::specular, steps({LayerTarget::specular}), entry, frame, inside);
        add_environment(surface, made);
        return made;
    }

    const SurfaceTextures& without(tv::Id id)
    {
        const auto [found, added] = without_frame.try_emplace(id);
        if (!added) return found->second;
        const tv::Surface& surface = scene.surfaces[id];
        if (std::any_of(surface.layers.begin(), surface.layers.end(), [](const auto& layer) { return layer.enabled; }))
            notes.tell(message<"textures-without-projection">(platform::latin1_to_utf8(surface.name)));
        add_environment(surface, found->second);
        return found->second;
    }
};

SurfaceTextureMaker::SurfaceTextureMaker(const tv::Scene& scene, const Options& options, Report& report)
    : state_(std::make_unique<State>(scene, options, report))
{
}

SurfaceTextureMaker::~SurfaceTextureMaker() = default;

const SurfaceTextures& SurfaceTextureMaker::textures(tv::Id id, const tv::TextureProjection* frame, bool inside)
{
    State& state = *state_;
    if (id >= state.scene.surfaces.size()) return state.nothing;
    const tv::Surface& surface = state.scene.surfaces[id];
    if (surface.layers.empty() || !frame || !frame->enabled || !make_projector(*frame).usable) return state.without(id);
    State::Entry& entry = state.entry(id);
    // Only what makes a difference stands in the key, so that a surface has one result where one will do.
    std::string key(1, entry.ends && inside ? 'i' : ' ');
    if (entry.recipe.has_procedural) append_frame(key, *frame);
    const auto known = entry.made.find(key);
    if (known != entry.made.end()) return known->second;
    if (entry.frames == most_frames) {
        state.notes.tell(message<"projections-too-many">(entry.name, most_frames));
        return *entry.first;
    }
    entry.frames++;
    const SurfaceTextures& made = entry.made[key] = state.make(surface, entry, *frame, inside);
    if (!entry.first) entry.first = &made;
    return made;
}

std::shared_ptr<const EncodedImage> SurfaceTextureMaker::image(const std::string& file_name)
{
    ImageFile* const file = state_->store.open(file_name, "");
    return file ? state_->store.encoded(*file) : nullptr;
}

} // namespace gltf
