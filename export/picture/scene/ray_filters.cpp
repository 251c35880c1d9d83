#include "export/picture/scene/ray_filters.h"

#include "export/picture/scene/stage.h"

namespace picture {

namespace {

const RayContext& context_of(const RTCFilterFunctionNArguments* arguments)
{
    return *reinterpret_cast<const RayContext*>(arguments->context);
}

const Triangles& triangles_of(const Stage& stage, RTCHitN* hit, unsigned count, unsigned i)
{
    return stage.triangles(RTCHitN_instID(hit, count, i, 0), RTCHitN_geomID(hit, count, i));
}

// Transparency doesn't need the right level of detail here: a shadow's pixel sees many of the texture's.
float alpha_at(const Stage& stage, const Triangles& triangles, const Surface& surface, uint32_t triangle, float u,
               float v)
{
    if (surface.base_map.map == gltf::none || triangles.uvs.empty()) return surface.alpha;
    const uint32_t* const corner = triangles.corners + std::size_t{triangle} * 3;
    const auto uv = [&](std::size_t k) {
        const float* const at = triangles.uvs.data() + std::size_t{corner[k]} * 2;
        return glm::vec2(at[0], at[1]);
    };
    const glm::vec2 place = uv(0) * (1 - u - v) + uv(1) * u + uv(2) * v;
    const TextureRef& map = surface.base_map;
    return surface.alpha * stage.model().textures.map(map.map).at(place * map.scale + map.offset, map.wrap, 1).w;
}

} // namespace

RayContext make_context(const Stage& stage, RTCIntersectContextFlags flags)
{
    RayContext context{};
    rtcInitIntersectContext(&context.library);
    context.library.flags = flags;
    context.stage = &stage;
    context.passing = 1;
    return context;
}

void turn_away_backs(const RTCFilterFunctionNArguments* arguments)
{
    const unsigned count = arguments->N;
    const Stage& stage = *context_of(arguments).stage;
    RTCRayN* const ray = arguments->ray;
    RTCHitN* const hit = arguments->hit;
    for (unsigned i = 0; i < count; ++i) {
        if (arguments->valid[i] == 0) continue;
        // Both in the mesh's own space, where a mirroring instance changes nothing.
        const float along = RTCRayN_dir_x(ray, count, i) * RTCHitN_Ng_x(hit, count, i) +
                            RTCRayN_dir_y(ray, count, i) * RTCHitN_Ng_y(hit, count, i) +
                            RTCRayN_dir_z(ray, count, i) * RTCHitN_Ng_z(hit, count, i);
        if (along > 0 && !stage.surface(triangles_of(stage, hit, count, i).surface).two_sided) arguments->valid[i] = 0;
    }
}

void pass_light(const RTCFilterFunctionNArguments* arguments)
{
    constexpr float nothing = 1.0f / 1024;
    const unsigned count = arguments->N;
    auto& context = *reinterpret_cast<RayContext*>(arguments->context);
    for (unsigned i = 0; i < count; ++i) {
        if (arguments->valid[i] == 0) continue;
        const Triangles& triangles = triangles_of(*context.stage, arguments->hit, count, i);
        const Surface& surface = context.stage->surface(triangles.surface);
        if (!surface.unlit) {
            context.passing *=
                1 - alpha_at(*context.stage, triangles, surface, RTCHitN_primID(arguments->hit, count, i),
                             RTCHitN_u(arguments->hit, count, i), RTCHitN_v(arguments->hit, count, i));
            if (context.passing < nothing) continue; // it is blocked
        }
        arguments->valid[i] = 0;
    }
}

} // namespace picture
