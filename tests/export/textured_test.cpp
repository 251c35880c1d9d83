// From a surface's layers and an instance's projection to texture coordinates, textures and shared meshes.
#include <unistd.h>

#include <fstream>

#include "export/gltf/image/image_png.h"
#include "lib/platform/files.h"
#include "tests/export/scene_builder.h"

namespace fs = std::filesystem;

namespace {

class Textured : public Export {
protected:
    void SetUp() override
    {
        Export::SetUp();
        images_ = fs::temp_directory_path() / ("export_test_images." + std::to_string(getpid()));
        options.image_directories = {images_};
        fs::create_directories(images_);
        gltf::Pixels pixels = gltf::make_pixels(4, 4);
        for (std::size_t i = 0; i < pixels.rgba.size(); ++i)
            pixels.rgba[i] = i % 4 == 3 ? 255 : static_cast<unsigned char>(i);
        const std::vector<unsigned char> png = gltf::encode_png(pixels);
        std::ofstream(images_ / "hull.png", std::ios::binary)
            .write(reinterpret_cast<const char*>(png.data()), static_cast<std::streamsize>(png.size()));
        platform::forget_directories();

        surface("hull");
        object("ship", cube_shape(), "hull");
        instance("one", "ship");
        instance("two", "ship");
    }
    void TearDown() override
    {
        fs::remove_all(images_);
        Export::TearDown();
    }

    void layer(const std::string& name, const char* channel, const char* wrap = "on")
    {
        const std::string texture = "texture of " + name;
        float amount = 1;
        Tv_Texture(texture.c_str(), w("image"), w("textureimage"), int32_t{4}, "hull.png", 1, w("filter"), w("mipmap"),
                   1, w("wrapu"), w("enabled"), w(wrap), 1, w("wrapv"), w("enabled"), w(wrap), 1, 0);
        Tv_Surface("hull", w("texture"), name.c_str(), w("texturelink"), texture.c_str(), 1, 0);
        if (channel == std::string("color")) {
            float triple[3] = {1, 1, 1};
            Tv_Surface("hull", w("texture"), name.c_str(), w("modulate"), w("color"), w("enabled"), w("on"),
                       w("multiplier"), w("color"), triple, w("colorblend"), w("diffuse"), &amount, 1, 0);
        } else {
            Tv_Surface("hull", w("texture"), name.c_str(), w("modulate"), w("color"), w("enabled"), w("off"),
                       w("modulate"), w("bump"), w("enabled"), w("on"), w("multiplier"), w("bumpu"), &amount,
                       w("multiplier"), w("bumpv"), &amount, 1, 0);
        }
    }

    // A planar map along Z: u and v over `size` units.
    void project(const std::string& name, float size, const char* space = "primitive")
    {
        float origin[3] = {-size / 2, -size / 2, 0}, u[3] = {size / 2, -size / 2, 0}, v[3] = {-size / 2, size / 2, 0},
              across[3] = {0, 0, 1};
        Tv_TxtrParam(w("instance"), name.c_str(), w("enabled"), w("on"), 1, w("coordsystem"), w(space), 1, w("origin"),
                     origin, 1, w("upoint"), u, 1, w("vpoint"), v, 1, w("wpoint"), across, 1, w("model"),
                     w("orthographic"), 1, 0);
    }

    // Lowest and highest u of a mesh.
    static std::pair<double, double> range_of_u(const GltfFile& file, std::size_t mesh)
    {
        const auto& attributes = file.json["meshes"][mesh]["primitives"][0]["attributes"];
        const std::vector<double> uv = file.numbers(attributes.at("TEXCOORD_0"));
        std::pair<double, double> range{uv[0], uv[0]};
        for (std::size_t i = 0; i < uv.size(); i += 2)
            range = {std::min(range.first, uv[i]), std::max(range.second, uv[i])};
        return range;
    }

    gltf::Options options;
    fs::path images_;
};

} // namespace

TEST_F(Textured, EqualFramesShareAMeshAndOthersDont)
{
    layer("layer 1", "color");
    project("one", 2);
    project("two", 2);
    const GltfFile shared = write(options);
    ASSERT_EQ(shared.json["meshes"].size(), 1u);
    EXPECT_NEAR(range_of_u(shared, 0).first, 0, 1e-6);
    EXPECT_NEAR(range_of_u(shared, 0).second, 1, 1e-6);
    EXPECT_EQ(shared.json["images"].size(), 1u);
    EXPECT_EQ(report.images, 1u);
    EXPECT_EQ(shared.json["samplers"][0]["wrapS"], 10497);

    project("two", 4);
    const GltfFile apart = write(options);
    EXPECT_EQ(apart.json["meshes"].size(), 2u);
    EXPECT_EQ(apart.json["images"].size(), 1u) << "one file is embedded once";
    EXPECT_EQ(apart.json["materials"].size(), 1u);
    EXPECT_NEAR(range_of_u(apart, 1).first, 0.25, 1e-6);

    options.scale = 100;
    EXPECT_EQ(range_of_u(write(options), 1), range_of_u(apart, 1)) << "the scale doesn't move the pictures";
}

TEST_F(Textured, AFrameInTheWorldLiesOnEachPlaceInAnotherWay)
{
    layer("layer 1", "color");
    project("one", 2, "world");
    project("two", 2, "world");
    place("two", {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 5, 0, 0, 1});
    const GltfFile file = write(options);
    ASSERT_EQ(file.json["meshes"].size(), 2u);
    EXPECT_NEAR(range_of_u(file, 0).first, 0, 1e-6);
    EXPECT_NEAR(range_of_u(file, 1).first, 2.5, 1e-6);
}

TEST_F(Textured, WithoutAFrameThereAreNoCoordinates)
{
    layer("layer 1", "color");
    const GltfFile file = write(options);
    EXPECT_EQ(file.json["meshes"].size(), 1u);
    EXPECT_FALSE(file.json["meshes"][0]["primitives"][0]["attributes"].contains("TEXCOORD_0"));
    EXPECT_FALSE(file.json.contains("textures"));
}

TEST_F(Textured, NormalMapsComeWithTangentsThatFollowTheCoordinates)
{
    layer("layer 1", "bump");
    project("one", 2);
    const GltfFile file = write(options);
    const auto& primitive = file.json["meshes"][0]["primitives"][0];
    ASSERT_TRUE(primitive["attributes"].contains("TANGENT"));
    EXPECT_TRUE(file.json["materials"][primitive["material"].get<std::size_t>()].contains("normalTexture"));
    const std::vector<double> tangents = file.numbers(primitive["attributes"]["TANGENT"]);
    const std::vector<double> normals = file.numbers(primitive["attributes"]["NORMAL"]);
    int seen = 0;
    for (std::size_t i = 0; 3 * i < normals.size(); ++i) {
        if (std::abs(normals[3 * i + 2]) < 0.5) continue; // sides, which the map meets edge-on
        ++seen;
        EXPECT_NEAR(tangents[4 * i], 1, 1e-6) << "u runs along X";
        EXPECT_EQ(tangents[4 * i + 3], normals[3 * i + 2] > 0 ? 1 : -1) << "the back shows the picture mirrored";
    }
    EXPECT_EQ(seen, 8);
}

TEST_F(Textured, SelfLitPicturesShine)
{
    float luminous = 1, nothing = 0;
    Tv_Surface("hull", w("shadingcoeffs"), w("luminous"), &luminous, w("diffuse"), &nothing, 1, 0);
    layer("layer 1", "color");
    project("one", 2);
    const GltfFile file = write(options);
    const auto& material = file.json["materials"][0];
    EXPECT_EQ(material["emissiveTexture"]["index"], material["pbrMetallicRoughness"]["baseColorTexture"]["index"]);
    EXPECT_EQ(material["emissiveFactor"], nlohmann::json({1, 1, 1}));
    EXPECT_EQ(material["pbrMetallicRoughness"]["baseColorFactor"][0], 0);
}

TEST_F(Textured, TheBackdropImageIsEmbeddedAndShown)
{
    Tv_Texture("sky", w("image"), w("textureimage"), int32_t{4}, "hull.png", 1, 0);
    Tv_Surface("sky", w("texture"), "layer_1", w("enabled"), w("on"), w("texturelink"), "sky", 1, 0);
    Tv_Background(w("colorscheme"), w("surfacelink"), "sky", 0);
    EXPECT_EQ(write(options).json["scenes"][0]["extras"]["backdrop"]["image"], 0);
    options.backdrop_dome = true;
    const GltfFile file = write(options);
    EXPECT_EQ(file.json["images"].size(), 1u);
    ASSERT_TRUE(file.node("backdrop"));
    EXPECT_NEAR(range_of_u(file, file.json["nodes"][*file.node("backdrop")]["mesh"]).second, 1, 1e-6);
}

TEST_F(Textured, ImagesStandBesideAGltfFile)
{
    layer("layer 1", "color");
    project("one", 2);
    gltf::write_file(gltf::make_tables(tv::scene(), options).tables, file_name(".gltf"));
    std::ifstream in(file_name(".gltf"));
    const auto json = nlohmann::json::parse(in);
    const std::string image = json["images"][0]["uri"];
    EXPECT_EQ(image, "Textured.ImagesStandBesideAGltfFile_hull.png");
    EXPECT_TRUE(fs::exists(file_name(".gltf").parent_path() / image));
}
