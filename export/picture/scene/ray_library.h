// Handles of the ray library, released when they go.
#pragma once
#include <embree3/rtcore.h>
#include <memory>

namespace picture {

template <auto Release>
struct Released {
    template <typename Handle>
    void operator()(Handle* handle) const
    {
        Release(handle);
    }
};

using Device = std::unique_ptr<RTCDeviceTy, Released<rtcReleaseDevice>>;
using RayTree = std::unique_ptr<RTCSceneTy, Released<rtcReleaseScene>>;
using Geometry = std::unique_ptr<RTCGeometryTy, Released<rtcReleaseGeometry>>;

// Throws std::bad_alloc or std::runtime_error where the library has met an error since the last call.
void check(RTCDevice device);

} // namespace picture
