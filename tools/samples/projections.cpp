// One object for each image projection and axis, each of a shape that suits it, all with the same numbered test card.
#include "tools/samples/pictures.h"
#include "tools/samples/samples.h"
#include "tools/samples/shapes.h"

namespace samples {

namespace {

unsigned axis_flag(char axis) // 0 for no axis
{
    if (axis == 'x') return x_axis;
    if (axis == 'y') return y_axis;
    return axis == 'z' ? z_axis : 0u;
}

int card_surface(Model& model, const std::string& type, char axis, Vec3 size, Vec3 center, double smoothing)
{
    lw_tools::SurfaceWriter surface = plain_surface(
        "Test card", {.red = 255, .green = 255, .blue = 255, .specular = 0.2, .smoothing_angle = smoothing});
    TextureSpec texture;
    texture.type = type + " Image Map";
    texture.image = "Images:TestCard.iff";
    texture.flags = axis_flag(axis) | pixel_blending | antialiasing;
    texture.size = size;
    texture.center = center;
    if (type == "Cylindrical" || type == "Spherical") texture.parameters = {1, 1};
    add_texture(surface, texture);
    return model.surface(surface);
}

// A dark rim, so that the shape reads against any background. It is the second surface: the first gives the projection.
int rim_surface(Model& model)
{
    return model.surface(plain_surface("Rim", {.red = 60, .green = 60, .blue = 70, .specular = 0.4}));
}

void write(const Model& model, const std::string& directory, const std::string& name)
{
    model.write(directory + "/" + name + ".lwo");
}

// A size along `axis` and one across it.
Vec3 sized(char axis, double length, double across)
{
    return {axis == 'x' ? length : across, axis == 'y' ? length : across, axis == 'z' ? length : across};
}

void planar(const std::string& directory, char axis)
{
    constexpr Vec3 center{0.5, 1, 0.25}; // off the origin: a centre that is lost shows as a card that is moved
    Model model;
    const int card = card_surface(model, "Planar", axis, sized(axis, 0.1, 2), center, 0);
    // The sheet's visible side looks to where the map is projected from: -Z and +X to the viewer's side, Y from above.
    Placement place;
    if (axis == 'x') place = {center, {0, 0, 1}, {0, 1, 0}, {-1, 0, 0}};
    if (axis == 'y') place = {center, {1, 0, 0}, {0, 0, 1}, {0, -1, 0}};
    if (axis == 'z') place = at(center.x, center.y, center.z);
    model.sheet(card, 2, 2, 4, 4, place);
    model.box(rim_surface(model), {-1.1, -1.1, 0.02}, {1.1, 1.1, 0.12}, place);
    write(model, directory, std::string("sheet_planar_") + axis + "_card_upright");
}

void cylindrical(const std::string& directory, char axis)
{
    Model model;
    const int card = card_surface(model, "Cylindrical", axis, sized(axis, 3, 2), {}, 60);
    model.tube(card, 1, -1.5, 1.5, 32, along(axis));
    const int rim = rim_surface(model);
    model.lathe({{0, -1.55, rim}, {1.04, -1.55, rim}, {1.04, -1.5, rim}, {0, -1.5, rim}}, 32, along(axis));
    model.lathe({{0, 1.5, rim}, {1.04, 1.5, rim}, {1.04, 1.55, rim}, {0, 1.55, rim}}, 32, along(axis));
    write(model, directory, std::string("tube_cylindrical_") + axis + "_card_wraps_once");
}

void spherical(const std::string& directory, char axis)
{
    Model model;
    const int card = card_surface(model, "Spherical", axis, {2, 2, 2}, {}, 60);
    model.ball(card, {1, 1, 1}, 32, 16, along(axis));
    write(model, directory, std::string("ball_spherical_") + axis + "_card_wraps_once");
}

// All four alike: a cubic map goes by the faces, whatever axis the file states.
void cubic(const std::string& directory, char axis)
{
    Model model;
    model.box(card_surface(model, "Cubic", axis, {2, 2, 2}, {}, 0), {-1, -1, -1}, {1, 1, 1});
    const std::string variant = axis == '-' ? "" : std::string(1, axis) + "_";
    write(model, directory, "box_cubic_" + variant + "card_on_each_side");
}

} // namespace

void write_projections(const std::string& directory)
{
    for (const char axis : {'x', 'y', 'z'}) {
        planar(directory, axis);
        cylindrical(directory, axis);
        spherical(directory, axis);
    }
    for (const char axis : {'x', 'y', 'z', '-'}) cubic(directory, axis);
    lw_tools::write_file(directory + "/Images/TestCard.iff", ilbm_bytes(test_card(), IlbmDepth::true_colour_24));
}

} // namespace samples
