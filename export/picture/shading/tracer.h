// What is seen along a ray: light sent back by surfaces, through what is transparent, and in mirrors.
#pragma once
#include <glm/vec4.hpp>

#include "export/picture/shading/surface_point.h"

namespace picture {

// Light that belongs to no node. Shines without shadows.
struct Lighting {
    bool own_lights = true;       // the file's lights shine
    glm::vec3 above{0}, below{0}; // on surfaces that face up and down, in between by their slope
    std::vector<LightSource> lamps;
    Backdrop surroundings; // what mirrors see where they see nothing else
};

class Tracer {
public:
    Tracer(const Stage& stage, const Lighting& lighting) : stage_(stage), lighting_(lighting) {}

    // Linear colour, multiplied with the coverage in w: 1 where nothing behind is to be seen. `hit`: of this ray.
    glm::vec4 seen(const Ray& ray, const Hit& hit) const { return seen(ray, hit, 0, 1); }

private:
    glm::vec4 seen(Ray ray, Hit hit, unsigned depth, float weight) const;
    glm::vec3 shade(const SurfacePoint& point, const Ray& ray, unsigned depth, float weight) const;
    glm::vec3 in_mirror(const SurfacePoint& point, const Ray& ray, unsigned depth, float weight) const;
    glm::vec3 lit_by(const LightSource& light, const SurfacePoint& point, const glm::vec3& to_eye, bool shadow) const;

    const Stage& stage_;
    const Lighting& lighting_;
};

} // namespace picture
