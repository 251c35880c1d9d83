// What a surface's layers become, pixel by pixel.
#include "tests/export/texture_scene.h"

#include <gmock/gmock.h>

using test::Rgba;
using test::TextureScene;
using testing::Each;
using testing::ElementsAre;
using tv::LayerChannel;

namespace {

using SurfaceTextures = TextureScene;

constexpr Rgba red{255, 0, 0, 255}, green{0, 255, 0, 255}, blue{0, 0, 255, 255}, white{255, 255, 255, 255};

Rgba grey(unsigned char x, unsigned char alpha = 255)
{
    return {x, x, x, alpha};
}

} // namespace

TEST_F(SurfaceTextures, OnePlainImageGoesInAsItIs)
{
    write("wood.png", test::four_colors_png());
    write("stone.jpg", test::grey_jpeg());
    tv::Layer& layer = add_layer(add_image("wood.png"), LayerChannel::color);
    of(layer, LayerChannel::color).multiplier = {1, 1, 1};
    of(layer, LayerChannel::diffuse).blend = 1.0f; // a colour layer's weight
    const gltf::SurfaceTextures textures = made();
    ASSERT_TRUE(textures.base_color);
    EXPECT_EQ(textures.base_color->image->bytes, test::bytes(test::four_colors_png()));
    EXPECT_TRUE(textures.base_color_replaces);
    EXPECT_FALSE(textures.diffuse_replaces || textures.alpha || textures.emissive || textures.normal);
    EXPECT_TRUE(textures.base_color->repeat_u && textures.base_color->mipmap);
    EXPECT_EQ(textures.base_color->uv_scale[0], 1);
    const auto jpeg = maker->image("stone.jpg");
    ASSERT_TRUE(jpeg);
    EXPECT_EQ(jpeg->mime, "image/jpeg");
    EXPECT_EQ(report.images_found, 2u);
}

TEST_F(SurfaceTextures, OneFileIsOneImageHoweverManyNameIt)
{
    write("Wood.lbm", test::four_colors_png()); // the content counts, not the extension
    add_layer(add_image("wood.iff"), LayerChannel::color);
    add_layer(add_image("wood.lbm"), LayerChannel::luminous_color);
    const gltf::SurfaceTextures textures = made();
    EXPECT_EQ(textures.base_color->image, textures.emissive->image);
    EXPECT_EQ(maker->image("WOOD.IFF"), textures.base_color->image);
    EXPECT_EQ(report.images_found, 1u);
    EXPECT_TRUE(noted("'wood.iff' isn't there by that name"));
}

TEST_F(SurfaceTextures, AlphaOfAFileHasNoSay)
{
    write("wood.tga", test::four_colors_targa(32, false)); // alpha 0 throughout
    add_layer(add_image("wood.tga"), LayerChannel::color);
    EXPECT_THAT(shown(made().base_color), ElementsAre(red, green, blue, white));
}

TEST_F(SurfaceTextures, ColorsMixInOrder)
{
    write_picture("a.png", 2, {red, grey(100)});
    write_picture("b.png", 2, {blue, grey(200)});
    surface().color = {0, 1, 0};
    tv::Layer& a = add_layer(add_image("a.png"), LayerChannel::color);
    of(a, LayerChannel::diffuse).blend = 0.5f;
    EXPECT_THAT(shown(made().base_color), ElementsAre(Rgba{128, 128, 0, 255}, Rgba{50, 178, 50, 255}));
    tv::Layer& b = add_layer(add_image("b.png"), LayerChannel::color);
    of(b, LayerChannel::diffuse).blend = 0.25f;
    of(b, LayerChannel::color).multiplier = {1, 0.5f, 2}; // what gets too bright is white
    EXPECT_THAT(shown(made().base_color), ElementsAre(Rgba{96, 96, 128, 255}, Rgba{88, 158, 138, 255}));
    of(b, LayerChannel::diffuse).blend = 1.0f; // hides a
    EXPECT_THAT(shown(made().base_color), ElementsAre(blue, Rgba{200, 100, 255, 255}));
}

TEST_F(SurfaceTextures, DiffuseLayersDarkenTheColor)
{
    write_picture("a.png", 2, {red, white});
    write_picture("d.png", 2, {grey(51), grey(255)});
    surface().color = {0, 1, 0};
    surface().diffuse = 0.5f;
    tv::Layer& d = add_layer(add_image("d.png"), LayerChannel::diffuse);
    of(d, LayerChannel::diffuse).multiplier = {0.5f, 0.5f, 0.5f};
    of(d, LayerChannel::diffuse).mix = 0.5f; // half the surface's own
    const gltf::SurfaceTextures plain = made();
    EXPECT_THAT(shown(plain.base_color), ElementsAre(Rgba{0, 77, 0, 255}, Rgba{0, 128, 0, 255})); // 0.3 and 0.5
    EXPECT_TRUE(plain.base_color_replaces && plain.diffuse_replaces);
    // A multiplier of 0 is one that wasn't stated.
    of(d, LayerChannel::diffuse) = {true, true, false, tv::Vec3{0, 0, 0}, {}, {}};
    add_layer(add_image("a.png"), LayerChannel::color);
    EXPECT_THAT(shown(made().base_color), ElementsAre(Rgba{51, 0, 0, 255}, white));
}

TEST_F(SurfaceTextures, BrightIsSeeThroughWhenInverted)
{
    write_picture("t.png", 3, {grey(0), grey(51), grey(255)});
    surface().color = {1, 0, 0};
    const tv::Id image = add_image("t.png");
    tv::Layer& t = add_layer(image, LayerChannel::face_opacity);
    of(t, LayerChannel::face_opacity).invert = true;
    of(t, LayerChannel::face_opacity).multiplier = {1, 1, 1};
    const auto alphas = [&] {
        std::vector<int> all;
        for (const Rgba& pixel : shown(made().base_color)) all.push_back(pixel[3]);
        return all;
    };
    EXPECT_THAT(alphas(), ElementsAre(255, 204, 0));
    const gltf::SurfaceTextures textures = made();
    EXPECT_TRUE(textures.alpha && textures.base_color_replaces && textures.base_color->image->has_alpha);
    EXPECT_EQ(shown(textures.base_color)[1], (Rgba{255, 0, 0, 204}));
    of(t, LayerChannel::face_opacity).invert = false;
    EXPECT_THAT(alphas(), ElementsAre(0, 51, 255));
    of(t, LayerChannel::face_opacity).invert = true;
    of(t, LayerChannel::face_opacity).multiplier = {0.5f, 0.5f, 0.5f};
    EXPECT_THAT(alphas(), ElementsAre(255, 230, 128));
    of(t, LayerChannel::face_opacity).mix = 0.5f;
    surface().face_opacity = 0.5f;
    EXPECT_THAT(alphas(), ElementsAre(191, 179, 128)); // halfway to 0.5
    surface().layers.clear();
    write_picture("t.png", 3, {grey(0), grey(0), grey(0)});
    of(add_layer(image, LayerChannel::face_opacity), LayerChannel::face_opacity).invert = true;
    const gltf::SurfaceTextures opaque = made();
    EXPECT_TRUE(opaque.alpha);
    EXPECT_FALSE(opaque.base_color->image->has_alpha) << "nothing is to be seen through: stays opaque";
}

TEST_F(SurfaceTextures, LuminousAndSpecular)
{
    write_picture("a.png", 2, {red, grey(100)});
    surface().color = {0, 1, 0};
    surface().luminous = 0.5f;
    surface().specular = 1;
    of(add_layer(add_image("a.png"), LayerChannel::luminous_color), LayerChannel::luminous).blend = 0.5f;
    tv::Layer& gloss = add_layer(add_image("a.png"), LayerChannel::reflect_opacity);
    of(gloss, LayerChannel::reflect_opacity).multiplier = {0.5f, 0.5f, 0.5f};
    of(gloss, LayerChannel::specular).mix = 0.5f;
    const gltf::SurfaceTextures textures = made();
    EXPECT_FALSE(textures.base_color) << "no layer acts on the colour";
    EXPECT_TRUE(textures.emissive_replaces);
    EXPECT_THAT(shown(textures.emissive), ElementsAre(Rgba{128, 64, 0, 255}, Rgba{50, 114, 50, 255}));
    EXPECT_THAT(shown(textures.specular), ElementsAre(grey(255, 147), grey(255, 153))); // 0.5 + 0.25 * grey
}

TEST_F(SurfaceTextures, BumpsLeanAwayFromTheirTop)
{
    // A hill in the middle of a plain, with a flank on each side of it.
    std::vector<Rgba> hill(64, grey(0));
    for (const std::size_t i : {27u, 28u, 35u, 36u}) hill[i] = grey(255);
    write_picture("hill.png", 8, hill);
    tv::Layer& bump = add_layer(add_image("hill.png"), LayerChannel::bump);
    of(bump, LayerChannel::bump_u).multiplier = {0.25f, 0.25f, 0.25f};
    of(bump, LayerChannel::bump_v).multiplier = {0.25f, 0.25f, 0.25f};
    const gltf::SurfaceTextures textures = made();
    EXPECT_FALSE(textures.base_color);
    const std::vector<Rgba> normals = shown(textures.normal);
    ASSERT_EQ(normals.size(), 64u);
    EXPECT_EQ(normals[0], (Rgba{128, 128, 255, 255})) << "flat";
    EXPECT_LT(normals[26][0], 128) << "left of the hill it rises to the right: leans to the left";
    EXPECT_GT(normals[29][0], 128) << "right of it";
    EXPECT_GT(normals[19][1], 128) << "above it, up in the picture: leans up, which is green in glTF";
    EXPECT_LT(normals[43][1], 128) << "below it";
    of(bump, LayerChannel::bump_v).multiplier = {0, 0, 0};
    EXPECT_EQ(shown(made().normal)[19][1], 128) << "no height for slopes along v";
}

TEST_F(SurfaceTextures, BumpsWrapWhereTheImageDoes)
{
    write_picture("edge.png", 4, {grey(255), grey(0), grey(0), grey(0)});
    const tv::Id image = add_image("edge.png");
    of(add_layer(image, LayerChannel::bump), LayerChannel::bump_u).multiplier = {1, 1, 1};
    EXPECT_LT(shown(made().normal)[3][0], 128) << "the next picture's bright edge lies to the right";
    scene.textures[image].wrap_u = scene.textures[image].wrap_v = false;
    const gltf::SurfaceTextures textures = made();
    EXPECT_EQ(textures.normal->image->width, 6u);
    EXPECT_EQ(shown(textures.normal)[6 + 4], (Rgba{128, 128, 255, 255}));
    EXPECT_EQ(shown(textures.normal)[0], (Rgba{128, 128, 255, 255})) << "a flat border";
}

TEST_F(SurfaceTextures, OutsideAnUnwrappedImageIsThePlainSurface)
{
    write("wood.png", test::four_colors_png());
    surface().color = {0, 0.2f, 0};
    surface().diffuse = 0.5f;
    const tv::Id image = add_image("wood.png");
    add_layer(image, LayerChannel::color);
    scene.textures[image].wrap_u = false;
    const gltf::SurfaceTextures across = made();
    const Rgba own{0, 51, 0, 255};
    EXPECT_THAT(shown(across.base_color), ElementsAre(own, red, green, own, own, blue, white, own));
    EXPECT_TRUE(across.base_color->repeat_v && !across.base_color->repeat_u && !across.base_color->mipmap);
    // u 0..1 must reach the two inner of four pixels.
    EXPECT_DOUBLE_EQ(across.base_color->uv_offset[0], 0.25);
    EXPECT_DOUBLE_EQ(across.base_color->uv_scale[0], 0.5);
    EXPECT_EQ(across.base_color->uv_scale[1], 1);
    scene.textures[image].wrap_v = false;
    const gltf::SurfaceTextures both = made();
    EXPECT_THAT(shown(both.base_color),
                ElementsAre(own, own, own, own, own, red, green, own, own, blue, white, own, own, own, own, own));
    const gltf::SurfaceTextures inside = made(true);
    EXPECT_EQ(inside.base_color->image->bytes, test::bytes(test::four_colors_png())) << "nothing outside is asked for";
}

TEST_F(SurfaceTextures, InsideMakesNoDifferenceToWhatWraps)
{
    write("wood.png", test::four_colors_png());
    add_layer(add_image("wood.png"), LayerChannel::color);
    made();
    EXPECT_EQ(&maker->textures(0, &frame, false), &maker->textures(0, &frame, true));
}

TEST_F(SurfaceTextures, ScalesBecomeTheSlotsTransform)
{
    write("wood.png", test::four_colors_png());
    tv::Layer& layer = add_layer(add_image("wood.png"), LayerChannel::color);
    layer.uscale = 0.5f; // a copy is half a unit wide: two of them
    layer.vscale = -0.4f;
    gltf::TextureSlot slot = *made().base_color;
    EXPECT_EQ(slot.image->bytes, test::bytes(test::four_colors_png()));
    EXPECT_DOUBLE_EQ(slot.uv_scale[0], 2);
    EXPECT_NEAR(slot.uv_scale[1], -2.5, 1e-6);
    // Counted from the picture's lower edge: v = 1 in glTF must stay a lower edge.
    EXPECT_NEAR(std::fmod(slot.uv_offset[1] + slot.uv_scale[1] + 3, 1), 0, 1e-6);
    EXPECT_EQ(slot.uv_offset[0], 0);
    for (const float bad : {0.0f, std::numeric_limits<float>::infinity(), std::numeric_limits<float>::quiet_NaN()}) {
        surface().layers[0].uscale = bad;
        EXPECT_EQ(made().base_color->uv_scale[0], 1) << bad;
    }
}

TEST_F(SurfaceTextures, ScalesThatDisagreeAreMixedIn)
{
    write_picture("a.png", 2, {red, blue});
    write_picture("b.png", 1, {grey(51)});
    add_layer(add_image("a.png"), LayerChannel::color).uscale = 0.5f;
    add_layer(add_image("b.png"), LayerChannel::diffuse);
    const gltf::SurfaceTextures textures = made();
    EXPECT_EQ(textures.base_color->uv_scale[0], 1);
    const Rgba dark_red{51, 0, 0, 255}, dark_blue{0, 0, 51, 255};
    EXPECT_THAT(shown(textures.base_color), ElementsAre(dark_red, dark_blue, dark_red, dark_blue));
}

TEST_F(SurfaceTextures, LayersOfDifferentSizesMeetAtTheLargest)
{
    write_picture("small.png", 1, {grey(51)});
    write_picture("wide.png", 4, {red, green, blue, white});
    write_picture("tall.png", 1, {grey(0), grey(255)});
    add_layer(add_image("wide.png"), LayerChannel::color);
    add_layer(add_image("small.png"), LayerChannel::diffuse);
    add_layer(add_image("tall.png"), LayerChannel::face_opacity); // bright is opaque
    const std::vector<Rgba> pixels = shown(made().base_color);
    EXPECT_THAT(pixels,
                ElementsAre(Rgba{51, 0, 0, 0}, Rgba{0, 51, 0, 0}, Rgba{0, 0, 51, 0}, Rgba{51, 51, 51, 0},
                            Rgba{51, 0, 0, 255}, Rgba{0, 51, 0, 255}, Rgba{0, 0, 51, 255}, Rgba{51, 51, 51, 255}));
}

TEST_F(SurfaceTextures, LongestSideIsLimited)
{
    write_picture("big.png", 8, std::vector<Rgba>(32, red));
    options.max_texture = 4;
    add_layer(add_image("big.png"), LayerChannel::color);
    EXPECT_THAT(shown(made().base_color), ElementsAre(red, red, red, red, red, red, red, red));
    add_layer(add_procedural("grid", {1, 1, 1}, {0, 0, 0}), LayerChannel::diffuse);
    EXPECT_EQ(made().base_color->image->width, 4u);
    surface().layers.erase(surface().layers.begin());
    EXPECT_EQ(made().base_color->image->width, 4u) << "procedurals alone, too";
}

TEST_F(SurfaceTextures, CheckerLiesInTheLayersOwnSpace)
{
    // Cubes of side 0.5 about the centre of the unit square, on a plane just in one of the pattern's planes.
    tv::Layer& layer = add_layer(add_procedural("checker", {1, 0, 0}, {0, 0, 1}), LayerChannel::color);
    layer.placed = true;
    layer.scale = {0.5f, 0.5f, 0.5f};
    layer.translate = {0.5f, 0.5f, 0};
    options.max_texture = 4;
    EXPECT_THAT(shown(made().base_color),
                ElementsAre(blue, blue, red, red, blue, blue, red, red, red, red, blue, blue, red, red, blue, blue));
    // On a cylinder of radius 1 one turn crosses four quarters of the XZ plane.
    frame.model = tv::ProjectionModel::cylindrical;
    frame.upoint = {0, 0, -1};
    layer.scale = {2, 2, 2};
    layer.translate = {0, 0, 0};
    EXPECT_THAT(shown(made().base_color)[0], red) << "behind, to the left: both negative";
    EXPECT_THAT(shown(made().base_color)[1], blue) << "in front, to the left";
}

TEST_F(SurfaceTextures, GridAndTurbulence)
{
    options.max_texture = 8;
    tv::Layer& layer = add_layer(add_procedural("grid", {0, 0, 1}, {1, 0, 0}, 0.125f), LayerChannel::color);
    std::vector<Rgba> pixels = shown(made().base_color);
    for (std::size_t i = 0; i < 64; i++) {
        const bool line = i % 8 == 0 || i % 8 == 7 || i / 8 == 0 || i / 8 == 7;
        EXPECT_EQ(pixels[i], line ? red : blue) << i;
    }
    // The same picture every time, of both colours and all between.
    options.max_texture = 64;
    layer.texture = add_procedural("rawturbulence", {1, 0, 0}, {0, 0, 1}, 1.6f, 0.4f);
    layer.placed = true;
    layer.scale = {0.1f, 0.1f, 0.1f};
    pixels = shown(made().base_color);
    EXPECT_EQ(pixels, shown(made().base_color));
    int lowest = 255, highest = 0;
    for (const Rgba& pixel : pixels) {
        EXPECT_NEAR(pixel[0] + pixel[2], 255, 1);
        EXPECT_EQ(pixel[1], 0);
        lowest = std::min<int>(lowest, pixel[0]);
        highest = std::max<int>(highest, pixel[0]);
    }
    EXPECT_LT(lowest, 40);
    EXPECT_GT(highest, 215);
}

TEST_F(SurfaceTextures, ProceduralsFollowTheProjectionButNotWithoutEnd)
{
    options.max_texture = 8;
    tv::Layer& layer = add_layer(add_procedural("checker", {1, 1, 1}, {0, 0, 0}), LayerChannel::color);
    layer.placed = true;
    layer.scale = {0.3f, 0.3f, 0.3f};
    made();
    tv::TextureProjection shifted = frame;
    shifted.upoint[0] = 2;
    EXPECT_NE(maker->textures(0, &frame).base_color->image, maker->textures(0, &shifted).base_color->image);
    std::set<const gltf::SurfaceTextures*> different;
    for (int i = 0; i < 1000; i++) {
        shifted.upoint[0] = static_cast<float>(2 + i);
        different.insert(&maker->textures(0, &shifted));
    }
    EXPECT_LE(different.size(), 32u);
    EXPECT_TRUE(noted("more than 32 projections"));
}

TEST_F(SurfaceTextures, WhatCantShowStaysOut)
{
    write("wood.png", test::four_colors_png());
    const tv::Id wood = add_image("wood.png");
    add_layer(add_procedural("off", {1, 1, 1}, {0, 0, 0}), LayerChannel::color);
    add_layer(tv::no_id, LayerChannel::color);
    add_layer(1000, LayerChannel::color);
    add_layer(wood, LayerChannel::color).enabled = false;
    of(add_layer(wood, LayerChannel::color), LayerChannel::diffuse).blend = 0.0f; // no weight
    const tv::Id disabled = add_image("wood.png");
    scene.textures[disabled].enabled = false;
    add_layer(disabled, LayerChannel::color);
    EXPECT_FALSE(made().any());
    EXPECT_TRUE(noted("'procedural: off' has no counterpart"));
    EXPECT_TRUE(noted("'texture: gone' has no picture"));
}

TEST_F(SurfaceTextures, WithoutAProjectionOnlyTheReflectionMap)
{
    write("wood.png", test::four_colors_png());
    write("sky.png", test::four_colors_png());
    add_layer(add_image("wood.png"), LayerChannel::color);
    surface().environment_enabled = true;
    surface().environment = add_image("sky.png");
    made();
    tv::TextureProjection flat = frame, off = frame;
    flat.upoint = flat.origin;
    off.enabled = false;
    for (const tv::TextureProjection* none :
         {static_cast<const tv::TextureProjection*>(nullptr), static_cast<const tv::TextureProjection*>(&flat),
          static_cast<const tv::TextureProjection*>(&off)}) {
        const gltf::SurfaceTextures& textures = maker->textures(0, none);
        EXPECT_FALSE(textures.any());
        ASSERT_TRUE(textures.environment);
        EXPECT_EQ(textures.environment_name, "sky.png");
    }
    EXPECT_TRUE(maker->textures(0, &frame).any());
    EXPECT_EQ(std::count_if(report.notes.begin(), report.notes.end(),
                            [](const auto& note) { return messages::is<"textures-without-projection">(note); }),
              1);
    EXPECT_FALSE(maker->textures(77, &frame).any()) << "no such surface";
}

TEST_F(SurfaceTextures, TenThousandLayers)
{
    write_picture("a.png", 1, {grey(255)});
    const tv::Id image = add_image("a.png");
    surface().color = {0, 0, 0};
    for (int i = 0; i < 10000; i++) of(add_layer(image, LayerChannel::color), LayerChannel::diffuse).blend = 0.01f;
    const std::vector<Rgba> pixels = shown(made().base_color);
    ASSERT_EQ(pixels.size(), 1u);
    EXPECT_EQ(pixels[0][0], 121); // 255 * (1 - 0.99 ^ 64)
    EXPECT_TRUE(noted("the first 64 are shown"));
}

TEST_F(SurfaceTextures, NumbersThatArentNumbers)
{
    write("wood.png", test::four_colors_png());
    constexpr float nan = std::numeric_limits<float>::quiet_NaN(), inf = std::numeric_limits<float>::infinity();
    surface().color = {nan, inf, -inf};
    surface().diffuse = surface().luminous = surface().specular = surface().face_opacity = nan;
    const tv::Id image = add_image("wood.png"),
                 noise = add_procedural("rawturbulence", {nan, inf, 0}, {0, 0, 0}, inf, nan);
    scene.textures[image].wrap_u = false;
    options.max_texture = 16;
    for (std::size_t c = 0; c < tv::layer_channel_count; c++)
        for (const tv::Id texture : {image, noise}) {
            tv::Layer& layer = add_layer(texture, static_cast<LayerChannel>(c));
            of(layer, static_cast<LayerChannel>(c)) = {true, true, true, tv::Vec3{inf, nan, -inf}, nan, inf};
            layer.placed = true;
            layer.scale = {0, nan, inf};
            layer.translate = {inf, 0, nan};
            layer.uscale = nan;
            layer.vscale = 1e-30f;
        }
    const gltf::SurfaceTextures textures = made();
    for (const auto& slot : {textures.base_color, textures.emissive, textures.normal, textures.specular}) {
        ASSERT_TRUE(slot);
        EXPECT_FALSE(shown(slot).empty());
        for (const double x : {slot->uv_scale[0], slot->uv_scale[1], slot->uv_offset[0], slot->uv_offset[1]})
            EXPECT_TRUE(std::isfinite(x));
    }
}
