// One moment of the model, set up round an eye for rays to be sent through.
#pragma once
#include <glm/mat3x3.hpp>
#include <glm/vec3.hpp>
#include <span>

#include "export/picture/scene/lights.h"
#include "export/picture/scene/model.h"
#include "export/picture/scene/view.h"

namespace picture {

// Coordinates are scene units seen from the eye: far from the scene's origin floats would not tell neighbours apart.
struct Ray {
    glm::vec3 origin{0}, direction{0, 0, -1}; // unit
    float width = 0, spread = 0;              // of the cone round it: at the origin, and per unit of way
};

struct Hit {
    float distance = 0;
    float u = 0, v = 0; // shares of the second and third corner
    uint32_t instance = gltf::none, primitive = 0, triangle = 0;

    explicit operator bool() const { return instance != gltf::none; }
};

struct Instance {
    const MeshTree* mesh = nullptr;
    glm::mat3 linear{1}, normals{1}; // from the mesh's space; normals keep their side, not their length
    glm::vec3 position{0};           // of the mesh's origin
};

inline constexpr unsigned packet = 8; // rays that travel together

class Stage {
public:
    explicit Stage(const Model& model); // borrows the model

    // All of it anew for a moment and an eye. Throws as check() does.
    void set(const Pose& pose, const glm::dvec3& eye);

    const Model& model() const { return model_; }
    const Instance& instance(uint32_t number) const { return instances_[number]; }
    const Triangles& triangles(uint32_t instance, uint32_t primitive) const
    {
        return instances_[instance].mesh->primitives[primitive];
    }
    const Surface& surface(uint32_t number) const { return model_.surfaces[number]; }
    std::span<const LightSource> lights() const { return lights_; }

    Hit closest(const Ray& ray) const;
    // At most `packet` rays that start close together and go much the same way.
    void closest(std::span<const Ray> rays, Hit* hits) const;
    // The share of light that comes through from `distance` away, 0 to 1.
    float passing(const glm::vec3& origin, const glm::vec3& direction, float distance) const;

private:
    const Model& model_;
    RayTree tree_;
    std::vector<Instance> instances_;
    std::vector<LightSource> lights_;
};

// Points, in the scene's own coordinates, that a view has to fit for all that is drawn to be in it. Unlit things, such
// as a dome, don't count unless there is nothing else.
std::vector<glm::dvec3> outline(const Model& model, const Pose& pose);

} // namespace picture
