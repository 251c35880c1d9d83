#include "tests/picture/table_builder.h"

#include <cmath>
#include <fstream>
#include <glm/geometric.hpp>
#include <iterator>

#include <png.h>

#include "export/picture/setting.h"

gltf::Material matt(double red, double green, double blue)
{
    gltf::Material result;
    result.base_color = {red, green, blue, 1};
    result.specular = 0;
    return result;
}

uint32_t TableBuilder::material(const gltf::Material& material)
{
    tables.materials.push_back(material);
    return static_cast<uint32_t>(tables.materials.size() - 1);
}

uint32_t TableBuilder::mesh(const std::vector<glm::vec3>& points, const std::vector<uint32_t>& corners,
                            uint32_t material, const std::vector<float>& uvs, const std::vector<float>& normals)
{
    std::vector<float> positions;
    for (const glm::vec3& point : points) positions.insert(positions.end(), {point.x, point.y, point.z});
    gltf::Primitive primitive;
    primitive.position = tables.buffer.add(gltf::Stretch::vec3, gltf::Element::vec3, positions, true);
    if (!uvs.empty()) primitive.uv = tables.buffer.add(gltf::Stretch::vec2, gltf::Element::vec2, uvs, false);
    if (!normals.empty())
        primitive.normal = tables.buffer.add(gltf::Stretch::vec3, gltf::Element::vec3, normals, false);
    primitive.indices = tables.buffer.add_indices(corners);
    primitive.material = material;
    tables.meshes.push_back({"", {primitive}});
    return static_cast<uint32_t>(tables.meshes.size() - 1);
}

uint32_t TableBuilder::square(float half, uint32_t material)
{
    return mesh({{-half, -half, 0}, {half, -half, 0}, {half, half, 0}, {-half, half, 0}}, {0, 1, 2, 0, 2, 3}, material,
                {0, 1, 1, 1, 1, 0, 0, 0});
}

gltf::Node& TableBuilder::node(uint32_t mesh, std::array<float, 3> place, std::array<float, 4> turn)
{
    tables.roots.push_back(static_cast<uint32_t>(tables.nodes.size()));
    gltf::Node& result = tables.nodes.emplace_back();
    result.mesh = mesh;
    result.translation = place;
    result.rotation = turn;
    return result;
}

gltf::Light& TableBuilder::light(gltf::Light::Type type, double strength, std::array<float, 3> place,
                                 std::array<float, 4> turn)
{
    node(gltf::none, place, turn).light = static_cast<uint32_t>(tables.lights.size());
    gltf::Light& result = tables.lights.emplace_back();
    result.type = type;
    result.intensity = strength;
    return result;
}

void TableBuilder::camera(std::array<float, 3> place, bool perspective, double half)
{
    node(gltf::none, place).camera = static_cast<uint32_t>(tables.cameras.size());
    gltf::Camera& result = tables.cameras.emplace_back();
    result.perspective = perspective;
    result.yfov = 2 * std::atan(half);
    result.xmag = result.ymag = half;
}

uint32_t TableBuilder::texture(uint32_t width, uint32_t height, const std::vector<unsigned char>& rgba,
                               gltf::Sampler sampler)
{
    png_image writer{};
    writer.version = PNG_IMAGE_VERSION;
    writer.width = width;
    writer.height = height;
    writer.format = PNG_FORMAT_RGBA;
    png_alloc_size_t size = 0;
    png_image_write_to_memory(&writer, nullptr, &size, 0, rgba.data(), 0, nullptr);
    auto image = std::make_shared<gltf::EncodedImage>();
    image->bytes.resize(size);
    png_image_write_to_memory(&writer, image->bytes.data(), &size, 0, rgba.data(), 0, nullptr);
    image->mime = "image/png";
    image->width = width;
    image->height = height;
    tables.samplers.push_back(sampler);
    tables.textures.push_back({static_cast<uint32_t>(tables.samplers.size() - 1), tables.buffer.add_image(image)});
    return static_cast<uint32_t>(tables.textures.size() - 1);
}

std::array<float, 4> turn(glm::vec3 axis, double degrees)
{
    const double half = degrees / 360 * 3.14159265358979323846;
    axis = glm::normalize(axis) * static_cast<float>(std::sin(half));
    return {axis.x, axis.y, axis.z, static_cast<float>(std::cos(half))};
}

picture::Request plain(uint32_t width, uint32_t height)
{
    picture::Request request;
    request.size = picture::Size{width, height};
    request.samples = 1;
    request.filter = picture::Filter::box;
    request.lamp = picture::Lamp::off;
    request.background.kind = picture::Background::Kind::color;
    return request;
}

std::vector<glm::vec4> paint(const gltf::Tables& tables, const picture::Request& request)
{
    const picture::Model model(tables, request.longest_texture);
    const double moment = model.line.seconds(request.frame.value_or(model.line.first_frame));
    const picture::Setting setting(model, request, std::span(&moment, 1));
    const picture::Size size = setting.outcome().size;
    std::vector<glm::vec4> result(std::size_t{size.width} * size.height);
    setting.painter().paint({0, 0, size.width, size.height}, result.data());
    return result;
}

glm::vec4 middle(const gltf::Tables& tables, const picture::Request& request)
{
    const std::vector<glm::vec4> all = paint(tables, request);
    return all[std::size_t{request.size->height / 2} * request.size->width + request.size->width / 2];
}

std::vector<unsigned char> bytes_of(const std::filesystem::path& file)
{
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}
