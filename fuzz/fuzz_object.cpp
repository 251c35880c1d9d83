// Object files, from the first byte to the built mesh.
#include "fuzz/harness.h"

extern "C" int LLVMFuzzerInitialize(int*, char***)
{
    fuzz::set_up();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size)
{
    fuzz::convert(data, size);
    return 0;
}
