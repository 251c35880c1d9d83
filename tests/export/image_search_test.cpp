// Which file a scene's image name finds, and what is told when there is none.
#include "export/gltf/image/image_search.h"
#include "tests/export/texture_scene.h"

#include <gmock/gmock.h>
#include <sys/stat.h>

using testing::ElementsAre;

namespace {

class ImageSearch : public test::TextureScene {
protected:
    // The file found, below the test's directory.
    std::string found(const std::string& name)
    {
        const gltf::ImagePlace place = gltf::find_image(name, options.image_directories);
        return place.path.empty() ? "" : place.path.substr(root.size() + 1);
    }
};

} // namespace

TEST_F(ImageSearch, TheNameItselfInAnyCase)
{
    write("Wood.IFF", "x");
    write("wood.lbm", "x");
    EXPECT_EQ(found("wood.iff"), "Wood.IFF");
    EXPECT_FALSE(gltf::find_image("wood.iff", options.image_directories).other_extension);
    EXPECT_EQ(found("DH1:Pictures/wood.iff"), "Wood.IFF") << "the bare name, when the path says nothing here";
    write("Maps/rust.tga", "x");
    EXPECT_EQ(found("maps\\RUST.TGA"), "Maps/rust.tga");
    EXPECT_EQ(found("rust.tga"), "");
}

TEST_F(ImageSearch, FoldedAndOtherExtensions)
{
    for (const char* file : {"a.LBM", "b.ham", "c.brs", "d", "e.png", "f.MAP", "g.jpeg"}) write(file, "x");
    for (const char* name : {"a.iff", "b.iff", "c.iff", "d.iff", "e.iff", "f.iff", "g.iff"})
        EXPECT_EQ(found(name).substr(0, 1), std::string(name).substr(0, 1));
    EXPECT_EQ(found("e.tga"), "e.png");
    EXPECT_EQ(found("e"), "e.png");
    EXPECT_EQ(found("e.v2"), "") << "not an image's extension, so part of the name";
    write("h.v2.bmp", "x");
    EXPECT_EQ(found("h.v2"), "h.v2.bmp");
}

TEST_F(ImageSearch, TheNameItselfAnywhereBeatsAnotherExtension)
{
    write("first/wood.png", "x");
    write("second/wood.iff", "x");
    options.image_directories = {root + "/first", root + "/second"};
    EXPECT_EQ(found("wood.iff"), "second/wood.iff");
    EXPECT_EQ(found("wood.lbm"), "first/wood.png") << "then by directory";
}

TEST_F(ImageSearch, MarksBehindTheName)
{
    write("fire.iff", "x");
    write("Smoke012.iff", "x");
    write("smoke003.iff", "x");
    write("smokestack.iff", "x");
    EXPECT_EQ(found("fire.iff (sequence)"), "fire.iff");
    EXPECT_EQ(found("fire (sequence)"), "fire.iff");
    EXPECT_EQ(found("smoke (sequence)"), "smoke003.iff") << "the first by number";
    EXPECT_TRUE(gltf::find_image("smoke (sequence)", options.image_directories).sequence);
    EXPECT_EQ(found("smoke"), "") << "not without the mark";
    for (const char* name : {"", " ", "(none)", "(NONE)", "(sequence)", "(none) (sequence)", "pictures/"})
        EXPECT_FALSE(gltf::find_image(name, options.image_directories).named) << name;
}

TEST_F(ImageSearch, OnlyRegularFiles)
{
    std::filesystem::create_directory(root + "/wood.iff");
    ASSERT_EQ(mkfifo((root + "/wood.png").c_str(), 0600), 0);
    EXPECT_EQ(found("wood.iff"), "") << "a pipe would keep us waiting";
}

TEST_F(ImageSearch, MissingOnesAreToldOnceWithEveryPlace)
{
    options.image_directories = {root, root + "/Images"};
    const tv::Id gone = add_image("r\xf6t.iff");
    add_layer(gone, tv::LayerChannel::color);
    add_layer(gone, tv::LayerChannel::diffuse);
    const gltf::SurfaceTextures textures = made();
    EXPECT_FALSE(textures.any()) << "the surface keeps its own colour";
    ASSERT_EQ(report.missing_images.size(), 1u);
    const gltf::MissingImage& missing = report.missing_images[0];
    EXPECT_EQ(missing.name, "r\xc3\xb6t.iff");
    EXPECT_EQ(missing.surface, "hull");
    EXPECT_EQ(missing.unreadable, "");
    EXPECT_THAT(missing.tried, ElementsAre(root + "/r\xc3\xb6t.iff", root + "/Images/r\xc3\xb6t.iff",
                                           root + "/r\xc3\xb6t.*", root + "/Images/r\xc3\xb6t.*"));
    EXPECT_EQ(report.images_found, 0u);
}

TEST_F(ImageSearch, BrokenOnesAreToldWithTheReason)
{
    write("broken.png", test::four_colors_png().substr(0, 40));
    write("text.iff", "nothing that could be an image, of some length");
    add_layer(add_image("broken.png"), tv::LayerChannel::color);
    add_layer(add_image("text.iff"), tv::LayerChannel::color);
    add_layer(add_image("TEXT.IFF"), tv::LayerChannel::color); // the same file by another name
    EXPECT_FALSE(made().any());
    ASSERT_EQ(report.missing_images.size(), 2u);
    EXPECT_THAT(report.missing_images[0].tried, ElementsAre(root + "/broken.png"));
    EXPECT_NE(report.missing_images[0].unreadable, "");
    EXPECT_THAT(report.missing_images[1].unreadable, testing::HasSubstr("none of the image formats"));
}

TEST_F(ImageSearch, NoImageIsNoFailure)
{
    add_layer(add_image("(none)"), tv::LayerChannel::color);
    EXPECT_FALSE(made().any());
    EXPECT_EQ(maker->image("(none)"), nullptr);
    EXPECT_TRUE(report.missing_images.empty());
}

TEST_F(ImageSearch, DecoderIsLoadedForTheFirstImageOnly)
{
    if (gltf::image_library_loaded()) GTEST_SKIP() << "another test of this process has loaded it";
    write("wood.png", test::four_colors_png());
    add_layer(add_procedural("checker", {1, 1, 1}, {0, 0, 0}), tv::LayerChannel::color);
    made();
    EXPECT_FALSE(gltf::image_library_loaded());
    ASSERT_TRUE(maker->image("wood.png"));
    EXPECT_TRUE(gltf::image_library_loaded());
}
