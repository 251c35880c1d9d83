#include "export/picture/scene/model.h"

#include "export/picture/scene/ray_filters.h"

namespace picture {

namespace {

std::vector<bool> placed_meshes(const gltf::Tables& tables, const Animation& animation)
{
    std::vector<bool> wanted(tables.meshes.size(), false);
    const Pose pose = animation.pose(0);
    for (std::size_t i = 0; i < tables.nodes.size(); ++i)
        if (pose.placed[i] && tables.nodes[i].mesh < wanted.size()) wanted[tables.nodes[i].mesh] = true;
    return wanted;
}

std::vector<bool> see_through(const std::vector<Surface>& surfaces)
{
    std::vector<bool> result;
    for (const Surface& surface : surfaces) result.push_back(surface.blend || surface.unlit);
    return result;
}

} // namespace

Model::Model(const gltf::Tables& the_tables, uint32_t longest_texture)
    : tables(the_tables), animation(the_tables), line(time_line(the_tables)), textures(the_tables, longest_texture),
      surfaces(make_surfaces(the_tables, textures)), backdrop(make_backdrop(the_tables, textures)),
      meshes(the_tables, placed_meshes(the_tables, animation), see_through(surfaces), turn_away_backs, pass_light)
{
}

} // namespace picture
