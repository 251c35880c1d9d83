// Image files: the header's reader, the decoder with FFmpeg behind it, and the PNG made of what came out.
#include "export/gltf/image/image_header.h"
#include "export/gltf/image/image_library.h"
#include "fuzz/harness.h"

extern "C" int LLVMFuzzerInitialize(int*, char***)
{
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size)
{
    const std::span<const unsigned char> bytes(data, size);
    gltf::read_image_header(bytes);
    gltf::read_jpeg_frame(bytes);
    const gltf::DecodeResult result = gltf::decode_image(bytes);
    const gltf::Pixels& pixels = result.pixels;
    const bool some = pixels.width > 0 && pixels.height > 0;
    if (some == !result.error.empty()) fuzz::fail("pixels and an error, or neither");
    if (pixels.rgba.size() != std::size_t{4} * pixels.width * pixels.height) fuzz::fail("pixels of another size");
    return 0;
}
