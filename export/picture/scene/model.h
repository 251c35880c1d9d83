// What all pictures of one file share: meshes as ray trees, textures, animation.
#pragma once
#include "export/picture/animation/pose.h"
#include "export/picture/animation/time_line.h"
#include "export/picture/scene/backdrop.h"
#include "export/picture/scene/mesh_trees.h"
#include "export/picture/scene/surfaces.h"

namespace picture {

class Model {
public:
    // Borrows the tables. `longest_texture`: pixels on a texture's longer side, at most. Throws as check() does.
    Model(const gltf::Tables& tables, uint32_t longest_texture);

    const gltf::Tables& tables;
    const Animation animation;
    const TimeLine line;
    TextureStore textures;
    const std::vector<Surface> surfaces; // by material; the last: of what has none
    const std::optional<Backdrop> backdrop;
    const MeshTrees meshes;
};

} // namespace picture
