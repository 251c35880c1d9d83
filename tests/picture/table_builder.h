// Small tables made by hand, and the colours that their pictures have.
#pragma once
#include <array>
#include <filesystem>
#include <glm/vec3.hpp>
#include <glm/vec4.hpp>
#include <vector>

#include "export/gltf/file/tables.h"
#include "export/picture/picture.h"

// A material that scatters and nothing else: no highlight, so that results are products of few numbers.
gltf::Material matt(double red, double green, double blue);

class TableBuilder {
public:
    gltf::Tables tables;

    uint32_t material(const gltf::Material& material);
    // A mesh of triangles, 3 corners each in their order; uv: 2 numbers a point, normals: 3. Returns its number.
    uint32_t mesh(const std::vector<glm::vec3>& points, const std::vector<uint32_t>& corners, uint32_t material,
                  const std::vector<float>& uvs = {}, const std::vector<float>& normals = {});
    // A square of half side `half` round the origin that faces +Z, its texture upright.
    uint32_t square(float half, uint32_t material);
    // A node below the scene.
    gltf::Node& node(uint32_t mesh, std::array<float, 3> place = {0, 0, 0}, std::array<float, 4> turn = {0, 0, 0, 1});
    // Shines along -Z of the node.
    gltf::Light& light(gltf::Light::Type type, double strength, std::array<float, 3> place = {0, 0, 0},
                       std::array<float, 4> turn = {0, 0, 0, 1});
    // Looks along -Z; orthographic with `half` as half its height, or in perspective with its tangent.
    void camera(std::array<float, 3> place, bool perspective, double half);
    // A texture of raw pixels, 4 bytes each. Returns its number.
    uint32_t texture(uint32_t width, uint32_t height, const std::vector<unsigned char>& rgba,
                     gltf::Sampler sampler = {});
};

// A turn about an axis, x y z w.
std::array<float, 4> turn(glm::vec3 axis, double degrees);

// One sample a pixel in its middle, no lamp, black behind.
picture::Request plain(uint32_t width, uint32_t height);

// The linear colours of a picture, coverage last; rows from the top.
std::vector<glm::vec4> paint(const gltf::Tables& tables, const picture::Request& request);
glm::vec4 middle(const gltf::Tables& tables, const picture::Request& request = plain(1, 1));

// A picture file's bytes, and what is in it.
std::vector<unsigned char> bytes_of(const std::filesystem::path& file);
