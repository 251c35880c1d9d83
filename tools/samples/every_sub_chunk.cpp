// One small object with every sub-chunk of a surface that this project reads, each with a value of its own, and some
// that it doesn't know: what a trace of it shows can be checked by hand.
#include "tools/samples/samples.h"
#include "tools/samples/shapes.h"

namespace samples {

using lw_tools::Bytes;
using lw_tools::SurfaceWriter;

namespace {

void triangle(lw_tools::ObjectWriter& object, float x, int surface)
{
    const unsigned a = object.point(x, 0, 0), b = object.point(x, 1, 0), c = object.point(x + 1, 1, 0.5f);
    object.polygon({a, b, c}, surface);
}

SurfaceWriter attributes()
{
    SurfaceWriter out("Attributes");
    out.color(255, 128, 0).u16("FLAG", 0x3ff);
    out.u16("LUMI", 64).f32("VLUM", 0.25f).u16("DIFF", 192).f32("VDIF", 0.75f).u16("SPEC", 128).f32("VSPC", 0.5f);
    out.u16("REFL", 32).f32("VRFL", 0.125f).u16("TRAN", 16).f32("VTRN", 0.0625f).u16("GLOS", 64);
    out.text("RIMG", "Pictures:Sky/Clouds.LBM").u16("RFLT", 3).f32("RSAN", 30).f32("RIND", 1.33f);
    out.f32("EDGE", 0.5f).f32("SMAN", 0.78539816f);
    return out.sub("SHDR", Bytes().text("unknown here")).sub("ODDS", Bytes().u8(1).u8(2).u8(3));
}

// Each sub-chunk of a texture once, on a texture that goes out as an image.
SurfaceWriter image_texture()
{
    SurfaceWriter out("Image texture");
    out.vec("TSIZ", 9, 9, 9); // belongs to no texture yet
    out.color(10, 20, 30).text("CTEX", "Planar Image Map").text("TIMG", "DH1:Pictures/TestCard.iff");
    out.sub("TWRP", Bytes().u16(2).u16(0)).u16("TFLG", 0x74);
    out.vec("TSIZ", 1, 2, 3).vec("TCTR", 0.5f, 0.25f, 0.125f).vec("TFAL", 1, 0, 0).vec("TVEL", 0, 0.5f, 0);
    out.texture_color(200, 100, 50).u16("TVAL", 192).f32("TAMP", 0.75f).u16("TFRQ", 3);
    out.f32("TSP0", 1).f32("TSP1", 2).f32("TSP2", 3).f32("TFP0", 4).f32("TFP1", 5).f32("TFP2", 6);
    out.u16("TIP0", 128).u16("TIP1", 256).u16("TIP2", 512);
    return out.f32("TOPC", 0.75f).f32("TAAS", 1).text("TALP", "(none)").u16("DIFF", 256);
}

// All seven channels, in the order of their numbers; the reflection texture is read and sends nothing.
SurfaceWriter seven_channels()
{
    SurfaceWriter out("Seven channels");
    out.color(90, 90, 90).u16("DIFF", 256);
    constexpr const char* channels[] = {"CTEX", "DTEX", "STEX", "RTEX", "TTEX", "LTEX", "BTEX"};
    for (const char* const channel : channels) {
        TextureSpec texture{.channel = channel, .type = "Cylindrical Image Map", .image = "(none)"};
        texture.image = std::string("IMAGES\\") + channel + ".IFF";
        texture.flags = y_axis | (channel[0] == 'T' ? unsigned{negative_image} : 0u);
        texture.size = {2, 4, 2};
        texture.value = 0.5;
        texture.amplitude = 0.5;
        texture.parameters = {2, 1};
        add_texture(out, texture);
    }
    return out;
}

// One procedural among them goes out, the first; the image map behind it gives the projection, though it has no image.
SurfaceWriter procedural_texture()
{
    SurfaceWriter out("Procedural texture");
    out.color(51, 102, 153).u16("DIFF", 256);
    add_texture(out, {.channel = "CTEX",
                      .type = "Grid",
                      .flags = x_axis | world_coordinates,
                      .size = {0.5, 0.5, 0.5},
                      .value = 0.75,
                      .opacity = 0.5,
                      .parameters = {0.5f},
                      .color = {255, 0, 0}});
    add_texture(out, {.channel = "DTEX", .type = "Spherical Image Map", .image = "(None)", .flags = z_axis});
    return out;
}

} // namespace

void write_every_sub_chunk(const std::string& directory)
{
    lw_tools::ObjectWriter object;
    object.surfaces = {attributes(), image_texture(), seven_channels(), procedural_texture(),
                       SurfaceWriter("Nothing said")};
    for (std::size_t i = 0; i < object.surfaces.size(); ++i) {
        object.surface_names.push_back(object.surfaces[i].name());
        triangle(object, 2 * static_cast<float>(i), static_cast<int>(i) + 1);
    }
    lw_tools::write_file(directory + "/surface_every_sub_chunk.lwo", object.to_bytes());
}

} // namespace samples
