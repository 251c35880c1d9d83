// Textures: where they lie, how they repeat, what a far one looks like.
#include "gtest/gtest.h"

#include "export/picture/base/color.h"
#include "export/picture/texture/texture_map.h"
#include "tests/picture/table_builder.h"

using picture::Content;
using picture::Image;
using picture::TextureMap;

namespace {

constexpr unsigned char white[] = {255, 255, 255, 255}, black[] = {0, 0, 0, 255};

Image checks(uint32_t side)
{
    Image image;
    image.width = image.height = side;
    for (uint32_t i = 0; i < side * side; ++i) {
        const unsigned char* const color = (i + i / side) % 2 == 0 ? white : black;
        image.rgba.insert(image.rgba.end(), color, color + 4);
    }
    return image;
}

TableBuilder shown(uint32_t width, uint32_t height, const std::vector<unsigned char>& rgba, gltf::Sampler sampler = {})
{
    TableBuilder scene;
    gltf::Material material = matt(1, 1, 1);
    material.unlit = true;
    material.base_texture.texture = scene.texture(width, height, rgba, sampler);
    scene.node(scene.square(1, scene.material(material)));
    scene.camera({0, 0, 10}, false, 1);
    return scene;
}

} // namespace

TEST(Texture, BytesAreTheScreens)
{
    // 188 shows half of the light that 255 does; every byte survives the way there and back.
    EXPECT_NEAR(picture::linear_of_screen()[188], 0.5029, 1e-4);
    for (unsigned i = 0; i < 256; ++i) EXPECT_EQ(picture::screen_of(picture::linear_of_screen()[i]), i);
    EXPECT_EQ(picture::screen_of(0.5f), 188);
    EXPECT_EQ(picture::screen_of(-1), 0);
    EXPECT_EQ(picture::screen_of(7), 255);
}

TEST(Texture, SmallerCopiesAreMeansOfLight)
{
    const picture::Wrap wrap;
    // Seen from far away a chess board is half as bright as white, not half its byte; also of an odd number of pixels.
    EXPECT_NEAR(TextureMap(checks(64), Content::color, 64).at({0.3f, 0.3f}, wrap, 64).x, 0.5, 0.01);
    EXPECT_NEAR(TextureMap(checks(63), Content::color, 64).at({0.3f, 0.3f}, wrap, 64).x, 0.5, 0.01);
    EXPECT_NEAR(TextureMap(checks(64), Content::numbers, 64).at({0.3f, 0.3f}, wrap, 64).x, 0.5, 0.01);
    // Without smaller copies it stays what it is.
    EXPECT_EQ(TextureMap(checks(64), Content::color, 64).at({0.5f / 64, 0.5f / 64}, {true, true, false}, 64).x, 1);
    // Reduced at once where less is wanted.
    EXPECT_EQ(TextureMap(checks(64), Content::color, 16).width(), 16u);

    // Green that nobody sees doesn't shine through.
    Image image{2, 1, {255, 0, 0, 255, 0, 255, 0, 0}, true};
    const glm::vec4 seen = TextureMap(image, Content::color, 2).at({0.5f, 0.5f}, wrap, 2);
    EXPECT_NEAR(seen.x, 1, 0.005);
    EXPECT_EQ(seen.y, 0);
    EXPECT_NEAR(seen.w, 0.5, 0.005);
}

TEST(Texture, LiesUprightAndWraps)
{
    // Red and green above, blue and white below.
    const std::vector<unsigned char> four = {255, 0, 0, 255, 0, 255, 0, 255, 0, 0, 255, 255, 255, 255, 255, 255};
    TableBuilder scene = shown(2, 2, four);
    std::vector<glm::vec4> pixels = paint(scene.tables, plain(2, 2));
    EXPECT_EQ(pixels[0], glm::vec4(1, 0, 0, 1));
    EXPECT_EQ(pixels[1], glm::vec4(0, 1, 0, 1));
    EXPECT_EQ(pixels[2], glm::vec4(0, 0, 1, 1));

    // Two by two of it, moved by one column.
    gltf::TextureUse& use = scene.tables.materials[0].base_texture;
    use.scale = {2, 2};
    use.offset = {0.5, 0};
    pixels = paint(scene.tables, plain(4, 4));
    EXPECT_EQ(pixels[0], glm::vec4(0, 1, 0, 1));
    EXPECT_EQ(pixels[1], glm::vec4(1, 0, 0, 1));
    EXPECT_EQ(pixels[2], glm::vec4(0, 1, 0, 1));

    // Held at its rim to the right, repeated downward.
    TableBuilder held = shown(2, 2, four, {false, true, true});
    held.tables.materials[0].base_texture.scale = {2, 2};
    pixels = paint(held.tables, plain(4, 4));
    EXPECT_EQ(pixels[2], glm::vec4(0, 1, 0, 1));
    EXPECT_EQ(pixels[3], glm::vec4(0, 1, 0, 1));
    EXPECT_EQ(pixels[8], glm::vec4(1, 0, 0, 1));
}

TEST(Texture, FilterGrowsWithTheWay)
{
    // 512 checks across a picture of 8 pixels: grey everywhere, where single samples would be black or white.
    const Image board = checks(512);
    TableBuilder scene = shown(512, 512, board.rgba);
    for (const glm::vec4& pixel : paint(scene.tables, plain(8, 8))) EXPECT_NEAR(pixel.x, 0.5, 0.01);
    // The same from far away in perspective.
    scene.tables.cameras[0].perspective = true;
    scene.tables.cameras[0].yfov = 0.02;
    scene.tables.nodes[1].translation = {0, 0, 100};
    for (const glm::vec4& pixel : paint(scene.tables, plain(8, 8))) EXPECT_NEAR(pixel.x, 0.5, 0.01);
}

TEST(Texture, NormalMapsTurnTheLight)
{
    // The map leans all normals by 45 degrees to the texture's upper side: light from above is met head-on.
    TableBuilder scene;
    gltf::Material material = matt(0.5, 0.5, 0.5);
    material.normal_texture.texture = scene.texture(1, 1, {128, 218, 218, 255});
    scene.node(scene.square(1, scene.material(material)));
    scene.camera({0, 0, 10}, false, 0.1);
    scene.light(gltf::Light::Type::directional, 3.14159265, {0, 0, 0}, turn({1, 0, 0}, -45)); // from +Y and +Z
    EXPECT_NEAR(middle(scene.tables).x, 0.5, 1e-3);
    // Turned upside down in its plane the square leans away: light along it.
    scene.tables.nodes[0].rotation = turn({0, 0, 1}, 180);
    EXPECT_NEAR(middle(scene.tables).x, 0, 5e-3);
    // Mirrored on both axes it looks just the same.
    scene.tables.nodes[0].rotation = {0, 0, 0, 1};
    scene.tables.nodes[0].scale = {-1, -1, 1};
    EXPECT_NEAR(middle(scene.tables).x, 0, 5e-3);
}
