// What rays ask of the triangles they meet, called by the ray library in the middle of its search.
#pragma once
#include <embree3/rtcore.h>

namespace picture {

class Stage;

// Passed along with every ray.
struct RayContext {
    RTCIntersectContext library; // first: the library knows no more of it
    const Stage* stage;
    float passing; // of light on its way through what is transparent
};

RayContext make_context(const Stage& stage, RTCIntersectContextFlags flags);

// Rays that look: one-sided surfaces aren't there from behind. It has to be decided here and not afterwards, since two
// polygons back to back lie at the very same distance.
void turn_away_backs(const RTCFilterFunctionNArguments* arguments);

// Rays toward a light: what is transparent takes its share, unlit surfaces take nothing.
void pass_light(const RTCFilterFunctionNArguments* arguments);

} // namespace picture
