// Scene files: what doesn't begin as one is given the head, so that no input is wasted on the test for it. "part" is
// an object that can be loaded.
#include <cstring>
#include <vector>

#include "fuzz/harness.h"

extern "C" int LLVMFuzzerInitialize(int*, char***)
{
    fuzz::set_up();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size)
{
    std::vector<uint8_t> scene;
    if (size < 4 || std::memcmp(data, "LWSC", 4) != 0) scene = {'L', 'W', 'S', 'C', '\n', '1', '\n'};
    scene.insert(scene.end(), data, data + size);
    fuzz::convert(scene.data(), scene.size());
    return 0;
}
