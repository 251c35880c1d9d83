#include "export/gltf/scene/backdrop.h"

#include <algorithm>
#include <cmath>
#include <glm/common.hpp>
#include <glm/geometric.hpp>

#include "export/gltf/base/notes.h"
#include "export/gltf/base/vectors.h"
#include "export/gltf/scene/nodes.h"
#include "lib/platform/latin1.h"
#include "lib/toolkit/units.h"

namespace gltf {

namespace {

using Color = std::array<double, 3>;

struct Shown {
    std::array<Color, 4> bands{}; // zenith, sky, ground, nadir
    bool colored = false;
    std::shared_ptr<const EncodedImage> image;
};

std::shared_ptr<const EncodedImage> image_of(const tv::Scene& scene, const std::string& surface_name,
                                             MaterialMaker& materials, std::string& file_name)
{
    const tv::Id id = scene.find(tv::Kind::surface, surface_name);
    if (id == tv::no_id) return nullptr;
    for (const tv::Layer& layer : scene.surfaces[id].layers) {
        if (!layer.enabled || layer.texture == tv::no_id) continue;
        const tv::Texture& texture = scene.textures[layer.texture];
        if (texture.kind != tv::TextureKind::image || texture.file_name.empty()) continue;
        file_name = texture.file_name;
        return materials.textures().image(texture.file_name);
    }
    return nullptr;
}

// Colours that the scene doesn't give take the nearest one that it does.
void fill_bands(const std::array<std::optional<tv::Vec3>, 4>& given, Shown& shown)
{
    static constexpr int order[4][4] = {{0, 1, 2, 3}, {1, 0, 2, 3}, {2, 3, 1, 0}, {3, 2, 1, 0}};
    for (std::size_t i = 0; i < 4; ++i)
        for (const int from : order[i])
            if (given[static_cast<std::size_t>(from)]) {
                shown.bands[i] = linear(*given[static_cast<std::size_t>(from)]);
                shown.colored = true;
                break;
            }
}

constexpr int segments = 48, rings = 12; // round the dome, and from its pole to the horizon

// A ball seen from inside. Elevation runs in rings from the zenith to the nadir; the horizon has two of them, since
// sky and ground need not be of one colour there.
struct Ball {
    std::vector<float> positions, colors, uvs;
    std::vector<uint32_t> indices;
};

Ball make_ball(const glm::dvec3& center, double radius, const Shown& shown)
{
    Ball ball;
    for (int half = 0; half < 2; ++half)
        for (int ring = 0; ring <= rings; ++ring) {
            const double down = (half + static_cast<double>(ring) / rings) / 2; // 0 zenith, 1 nadir
            const double height = std::cos(down * tv::pi), width = std::sin(down * tv::pi);
            const auto band = static_cast<std::size_t>(2 * half);
            for (int segment = 0; segment <= segments; ++segment) {
                // The middle of a picture lies straight ahead, at -Z, and its right side on the right.
                const double turn = static_cast<double>(segment) / segments;
                const double angle = (turn - 0.5) * 2 * tv::pi;
                const glm::dvec3 point =
                    center + radius * glm::dvec3(std::sin(angle) * width, height, -std::cos(angle) * width);
                for (int i = 0; i < 3; ++i) ball.positions.push_back(file_float(point[i]));
                const double share = static_cast<double>(ring) / rings;
                for (std::size_t i = 0; i < 3; ++i)
                    ball.colors.push_back(
                        file_float(shown.bands[band][i] * (1 - share) + shown.bands[band + 1][i] * share));
                ball.uvs.push_back(file_float(turn));
                ball.uvs.push_back(file_float(down));
            }
        }
    constexpr uint32_t across = segments + 1;
    for (uint32_t row = 0; row + 1 < 2 * (rings + 1); ++row) {
        if (row == rings) continue; // between the two horizons
        for (uint32_t i = 0; i < segments; ++i) {
            const uint32_t a = row * across + i, b = a + 1, c = a + across, d = c + 1;
            // At the poles one of the two has no area.
            if (row != 0) ball.indices.insert(ball.indices.end(), {a, c, b});
            if (row != 2 * rings) ball.indices.insert(ball.indices.end(), {b, c, d});
        }
    }
    return ball;
}

void add_dome(const tv::Scene& scene, double scale, const Measure& measure, const Shown& shown,
              MaterialMaker& materials, Tables& tables, Report& report)
{
    // Round everything, the cameras too, and far enough out that nothing seems to touch it.
    glm::dvec3 lower = measure.lower, upper = measure.upper;
    for (const tv::Camera& camera : scene.cameras) {
        const glm::dvec3 from = vector_of(camera.look_from);
        if (!(glm::dot(from, from) < 1e30)) continue;
        lower = glm::min(lower, from);
        upper = glm::max(upper, from);
    }
    const double radius = std::clamp(glm::distance(lower, upper) * 2, 10.0, 1e18);
    const Ball ball = make_ball((lower + upper) * (0.5 * scale), radius * scale, shown);

    Material material;
    material.name = "backdrop";
    material.unlit = true;
    Primitive primitive;
    primitive.position = tables.buffer.add(Stretch::vec3, Element::vec3, ball.positions, true);
    if (shown.image) {
        material.base_texture.texture = materials.texture(shown.image, {true, false, true});
        primitive.uv = tables.buffer.add(Stretch::vec2, Element::vec2, ball.uvs, false);
    } else {
        primitive.color = tables.buffer.add(Stretch::vec3, Element::vec3, ball.colors, false);
    }
    primitive.indices = tables.buffer.add_indices(ball.indices);
    primitive.material = static_cast<uint32_t>(tables.materials.size());
    tables.materials.push_back(std::move(material));
    report.triangles += ball.indices.size() / 3;
    Node node;
    node.name = "backdrop";
    node.mesh = static_cast<uint32_t>(tables.meshes.size());
    tables.meshes.push_back({"backdrop", {primitive}});
    tables.roots.push_back(static_cast<uint32_t>(tables.nodes.size()));
    tables.nodes.push_back(std::move(node));
}

} // namespace

void make_backdrop(const tv::Scene& scene, const Options& options, const Measure& measure, MaterialMaker& materials,
                   Tables& tables, Report& report)
{
    const tv::Backdrop& backdrop = scene.backdrop;
    Shown shown;
    Json extras = Json::object();
    switch (backdrop.scheme) {
    case tv::BackdropScheme::none: break;
    case tv::BackdropScheme::color:
        if (!backdrop.color) break;
        shown.bands.fill(linear(*backdrop.color));
        shown.colored = true;
        extras = {{"scheme", "color"}, {"color", shown.bands[0]}};
        break;
    case tv::BackdropScheme::gradient: {
        fill_bands(backdrop.gradient, shown);
        if (!shown.colored) break;
        extras["scheme"] = "gradient";
        static constexpr const char* names[] = {"zenith", "sky", "ground", "nadir"};
        for (std::size_t i = 0; i < 4; ++i)
            if (backdrop.gradient[i]) extras[names[i]] = linear(*backdrop.gradient[i]);
        break;
    }
    case tv::BackdropScheme::surface: {
        std::string file_name;
        shown.image = image_of(scene, backdrop.surface, materials, file_name);
        extras = {{"scheme", "image"}, {"name", platform::latin1_to_utf8(file_name)}};
        if (shown.image) extras["image"] = materials.image(shown.image);
        break;
    }
    }
    if (!extras.empty()) tables.scene_extras["backdrop"] = std::move(extras);
    if (!options.backdrop_dome) return;
    if (shown.colored || shown.image)
        add_dome(scene, options.scale, measure, shown, materials, tables, report);
    else
        report.notes.push_back(message<"backdrop-empty">());
}

} // namespace gltf
