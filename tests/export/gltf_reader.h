// What the file alone says: a small reader of GLB files, and where their nodes stand at a time.
#pragma once
#include <filesystem>
#include <glm/gtc/quaternion.hpp>
#include <glm/mat4x4.hpp>
#include <glm/vec3.hpp>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <vector>

struct GltfFile {
    nlohmann::json json;
    std::string bytes; // the data chunk

    static GltfFile read(const std::filesystem::path& path); // fails the test where the container is wrong

    // All numbers of an accessor, element after element.
    std::vector<double> numbers(std::size_t accessor) const;

    // One primitive's vertices by corner: three a triangle.
    struct Corners {
        std::vector<glm::dvec3> positions, normals;
    };
    Corners corners(std::size_t mesh, std::size_t primitive = 0) const;

    std::optional<std::size_t> node(const std::string& name) const; // the first of that name
    // The placing of a node within its parent and in the scene; `seconds` by the file's own clock.
    glm::dmat4 local(std::size_t node, double seconds) const;
    glm::dmat4 world(std::size_t node, double seconds) const;
    // The value of an animated path, as the interpolation that the file names gives it. Empty: not animated.
    std::vector<double> animated(std::size_t node, const std::string& path, double seconds) const;
    std::vector<double> key_times(std::size_t node, const std::string& path) const;
    bool is_animated(std::size_t node, const std::string& path) const { return !key_times(node, path).empty(); }

private:
    const nlohmann::json* sampler(std::size_t node, const std::string& path) const;
};
