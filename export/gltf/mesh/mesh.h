// Objects -> glTF meshes, shared wherever two instances look the same.
#pragma once
#include <array>
#include <functional>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "export/gltf/base/options.h"
#include "export/gltf/base/report.h"
#include "export/gltf/file/tables.h"
#include "export/gltf/material/material.h"
#include "export/gltf/mesh/polygons.h"
#include "export/gltf/mesh/tessellation.h"
#include "lib/toolkit/scene/scene.h"

namespace gltf {

// How an instance shows its object, beyond the surfaces' own.
struct MeshLook {
    double opacity = 1;       // above 0
    tv::Id fades = tv::no_id; // the instance whose fading its materials follow: they are its own
};

class MeshMaker {
public:
    // `poll` is called now and then, and throws to stop the work.
    MeshMaker(const tv::Scene& scene, const Options& options, MaterialMaker& materials, Tables& tables, Report& report,
              std::function<void()> poll);

    // The mesh of an object as an instance with this projection shows it, or `none` where there is nothing to draw.
    // `world` is the instance's placement in the scene's own units: a frame "in the world" lies on each placement in
    // another way, and then each gets a mesh of its own.
    uint32_t mesh(tv::Id object, const tv::TextureProjection& projection, const std::array<double, 16>& world,
                  const MeshLook& look = {});

    void finish(); // after the last mesh: one note for all polygons left out, one for those too tangled

private:
    struct Group;
    struct Build;
    const std::vector<tv::Id>& surfaces_of(tv::Id object);
    uint32_t build(tv::Id object, const tv::TextureProjection* frame, const std::array<double, 16>& world,
                   const MeshLook& look);
    void add_primitive(std::size_t number, Build& build);
    void add_triangles(Group& group, Build& build);
    Primitive store(Group& group, const tv::TextureProjection* frame, const MeshLook& look);

    const tv::Scene& scene_;
    const double scale_;
    MaterialMaker& materials_;
    Tables& tables_;
    Report& report_;
    Tessellator tessellator_;
    PolygonFaults faults_;
    std::function<void()> poll_;
    std::size_t corners_done_ = 0;
    std::unordered_set<tv::Id> counted_; // objects whose faults are: once, however many meshes an object becomes
    std::unordered_map<tv::Id, std::vector<tv::Id>> surfaces_;
    std::unordered_map<std::string, uint32_t> made_;
};

} // namespace gltf
