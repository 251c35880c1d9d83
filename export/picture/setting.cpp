#include "export/picture/setting.h"

#include <algorithm>
#include <cmath>
#include <glm/geometric.hpp>
#include <stdexcept>

namespace picture {

namespace {

constexpr double darkest = 0.02; // mean brightness of what a picture shows; below it nobody sees anything

// Round objects that have no scene: a light room for mirrors, and something darker behind, for them to stand out.
constexpr std::array<glm::vec3, 4> room = {glm::vec3(0.42f), glm::vec3(0.62f), glm::vec3(0.30f), glm::vec3(0.16f)};
constexpr std::array<glm::vec3, 4> behind_objects = {glm::vec3(0.10f, 0.13f, 0.18f), glm::vec3(0.32f, 0.37f, 0.44f),
                                                     glm::vec3(0.28f, 0.32f, 0.38f), glm::vec3(0.05f, 0.06f, 0.08f)};

Size checked_size(const gltf::Tables& tables, const Request& request)
{
    const Size size = request.size ? *request.size : natural_size(tables);
    if (size.width == 0 || size.height == 0 || size.width > most_pixels || size.height > most_pixels)
        throw std::runtime_error("a picture's size has to be between 1x1 and " + std::to_string(most_pixels) + "x" +
                                 std::to_string(most_pixels));
    if (request.samples == 0 || request.samples > most_side)
        throw std::runtime_error("samples have to be between 1 and " + std::to_string(most_side));
    return size;
}

// The scene's own ambient light.
glm::vec3 ambient_of(const gltf::Tables& tables)
{
    const auto found = tables.scene_extras.find("ambient");
    if (found == tables.scene_extras.end() || !found->is_object()) return glm::vec3(0);
    const auto color = found->find("color"), intensity = found->find("intensity");
    if (color == found->end() || intensity == found->end() || !color->is_array() || color->size() != 3 ||
        !intensity->is_number())
        return glm::vec3(0);
    glm::vec3 result(0);
    for (std::size_t i = 0; i < 3; ++i)
        if ((*color)[i].is_number())
            result[static_cast<int>(i)] = gltf::file_float((*color)[i].get<double>() * intensity->get<double>());
    return result;
}

} // namespace

Size natural_size(const gltf::Tables& tables)
{
    Size size{640, 480};
    const auto found = tables.asset_extras.find("resolution");
    if (found == tables.asset_extras.end() || !found->is_array() || found->size() != 2) return size;
    const auto side = [&](std::size_t i) { return (*found)[i].is_number() ? (*found)[i].get<double>() : 0.0; };
    const auto good = [](double pixels) { return pixels >= 1 && pixels <= most_pixels; };
    if (good(side(0)) && good(side(1))) size = {static_cast<uint32_t>(side(0)), static_cast<uint32_t>(side(1))};
    return size;
}

Setting::Setting(const Model& model, const Request& request, std::span<const double> moments)
    : model_(model), stage_(model)
{
    outcome_.size = checked_size(model.tables, request);
    outcome_.triangles = model.meshes.triangles();
    frame_.width = outcome_.size.width;
    frame_.height = outcome_.size.height;
    frame_.side = request.samples;
    frame_.filter = request.filter;
    const Pose pose = model.animation.pose(moments.front());
    place_view(pose, request.view, moments);
    stage_.set(pose, view_.eye);
    place_backdrop(request.background);
    light(request.lamp);
}

void Setting::place_view(const Pose& pose, View view, std::span<const double> moments)
{
    const double aspect = static_cast<double>(frame_.width) / frame_.height;
    if (view == View::automatic || view == View::camera) {
        if (const auto found = camera_view(model_.tables, pose, aspect)) {
            view_ = *found;
            outcome_.view = View::camera;
            return;
        }
        if (view == View::camera) throw std::runtime_error("the scene has no camera to look through");
        view = View::three_quarter;
    }
    std::vector<glm::dvec3> points;
    for (const double moment : moments) {
        const auto more = outline(model_, model_.animation.pose(moment));
        points.insert(points.end(), more.begin(), more.end());
    }
    view_ = fitted_view(view, points, aspect);
    outcome_.view = view;
}

void Setting::move_to(double seconds)
{
    const Pose pose = model_.animation.pose(seconds);
    if (outcome_.view == View::camera)
        if (const auto found = camera_view(model_.tables, pose, static_cast<double>(frame_.width) / frame_.height))
            view_ = *found;
    stage_.set(pose, view_.eye);
}

void Setting::place_backdrop(const Background& background)
{
    // An object alone has no surroundings; a scene without any was black all round.
    const bool object = model_.tables.cameras.empty();
    Backdrop own = model_.backdrop.value_or(plain_backdrop(glm::vec3(0)));
    lighting_.surroundings = own;
    if (!model_.backdrop && object) {
        lighting_.surroundings.bands = room;
        own.bands = behind_objects;
    }
    switch (background.kind) {
    case Background::Kind::file: frame_.behind = own; break;
    case Background::Kind::color:
        frame_.behind = plain_backdrop({gltf::file_float(background.color[0]), gltf::file_float(background.color[1]),
                                        gltf::file_float(background.color[2])});
        break;
    case Background::Kind::none: frame_.behind.reset(); break;
    }
}

void Setting::light(Lamp lamp)
{
    lighting_.above = lighting_.below = ambient_of(model_.tables);
    if (lamp == Lamp::off) return;
    if (lamp == Lamp::on) {
        outcome_.lamp = Outcome::LampReason::asked_for;
    } else if (stage_.lights().empty()) {
        outcome_.lamp = Outcome::LampReason::no_lights;
    } else {
        constexpr uint32_t across = 64;
        Frame small = frame_;
        small.width = across;
        small.height = std::clamp(across * frame_.height / frame_.width, 1u, 4 * across);
        small.side = 1;
        small.filter = Filter::box;
        const Painter::Brightness seen = Painter(stage_, view_, lighting_, small).brightness();
        if (seen.covered == 0 || seen.mean >= darkest) return;
        outcome_.lamp = Outcome::LampReason::too_dark;
    }
    // Over the left shoulder of who looks. The ambient light of a file without lights is the host's default, not its own.
    LightSource source;
    source.direction = glm::vec3(view_.axes * glm::normalize(glm::dvec3(0.45, -0.55, -1)));
    source.strength = glm::vec3(2.3f); // lux: three quarters of the light that shows white as white
    lighting_.lamps.push_back(source);
    lighting_.above = glm::vec3(0.3f);
    lighting_.below = glm::vec3(0.1f);
}

} // namespace picture
