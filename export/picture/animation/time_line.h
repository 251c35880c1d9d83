// The scene's frames and the file's seconds.
#pragma once
#include "export/gltf/file/tables.h"

namespace picture {

struct TimeLine {
    double first_frame = 0, last_frame = 0; // of the scene's own time line
    double rate = 30;                       // frames a second, above 0
    double frame_zero = 0;                  // seconds at which frame 0 lies

    double seconds(double frame) const { return frame_zero + frame / rate; }
};

// From the scene's extras. A file without them runs at 30 frames a second from 0 to its last key.
TimeLine time_line(const gltf::Tables& tables);

} // namespace picture
