#include <cmath>

#include "export/gltf/material/material.h"
#include "tests/export/scene_builder.h"

namespace {

tv::Surface painted(float diffuse, float specular, float reflect)
{
    tv::Surface surface;
    surface.name = "paint";
    surface.color = {0.5f, 0.25f, 1};
    surface.diffuse = diffuse;
    surface.specular = specular;
    surface.reflect = reflect;
    surface.shininess = 64;
    return surface;
}

} // namespace

TEST(PlainMaterial, PaintIsNotMetalAndMirrorsAre)
{
    const gltf::Material paint = gltf::plain_material(painted(1, 0.5f, 0));
    EXPECT_EQ(paint.metallic, 0);
    EXPECT_NEAR(paint.base_color[0], 0.2140411, 1e-6) << "linear";
    EXPECT_EQ(paint.base_color[2], 1);
    EXPECT_NEAR(paint.specular, 0.5, 1e-6);
    EXPECT_NEAR(paint.roughness, std::pow(2.0 / 258, 0.25), 1e-9);
    EXPECT_FALSE(paint.blend);

    EXPECT_EQ(gltf::plain_material(painted(0.8f, 1, 0.2f)).metallic, 0) << "lacquer";
    const gltf::Material mirror = gltf::plain_material(painted(0, 0, 1));
    EXPECT_EQ(mirror.metallic, 1);
    EXPECT_LT(mirror.roughness, 0.1);
    for (std::size_t i = 0; i < 3; ++i) EXPECT_EQ(mirror.base_color[i], 1) << "mirrors show no colour of their own";

    const gltf::Material chalk = gltf::plain_material(painted(1, 0, 0));
    EXPECT_EQ(chalk.roughness, 1);
    EXPECT_EQ(chalk.specular, 0);

    // The more it mirrors the more it is metal, without a jump.
    double before = 0;
    for (float reflect = 0; reflect <= 1; reflect += 0.01f) {
        const double metallic = gltf::plain_material(painted(1 - reflect, 1, reflect)).metallic;
        EXPECT_GE(metallic, before);
        EXPECT_LT(metallic - before, 0.03);
        before = metallic;
    }
    EXPECT_EQ(before, 1);
}

TEST(PlainMaterial, LightAlphaAndIndex)
{
    tv::Surface surface = painted(0.5f, 0, 0);
    surface.luminous = 0.5f;
    EXPECT_NEAR(gltf::plain_material(surface).emissive[2], 0.5, 1e-6);
    EXPECT_EQ(gltf::plain_material(surface).emissive_strength, 1);
    surface.luminous = 3;
    EXPECT_NEAR(gltf::plain_material(surface).emissive[2], 1, 1e-6);
    EXPECT_EQ(gltf::plain_material(surface).emissive_strength, 3);

    surface.face_opacity = 0.25f;
    EXPECT_TRUE(gltf::plain_material(surface).blend);
    EXPECT_NEAR(gltf::plain_material(surface).base_color[3], 0.25, 1e-6);
    surface.face_opacity = -0.5f;
    EXPECT_EQ(gltf::plain_material(surface).base_color[3], 0);
    surface.face_opacity = 1.5f;
    EXPECT_FALSE(gltf::plain_material(surface).blend);
    surface.face_opacity = 0.99999f;
    EXPECT_FALSE(gltf::plain_material(surface).blend) << "opaque stays opaque";

    EXPECT_EQ(gltf::plain_material(surface).ior, 1.5) << "an index of 1 says nothing";
    surface.ior = 1.33f;
    surface.specular = 1;
    const gltf::Material water = gltf::plain_material(surface);
    EXPECT_NEAR(water.ior, 1.33, 1e-6);
    const double head_on = std::pow((water.ior - 1) / (water.ior + 1), 2) * water.specular_color[0] * water.specular;
    EXPECT_NEAR(head_on, 0.04, 1e-9) << "the highlight doesn't hang on the index";

    surface.metal = 1;
    EXPECT_LT(gltf::plain_material(surface).specular_color[1], gltf::plain_material(surface).specular_color[2]);
}

TEST_F(Export, MaterialsOfAnyNumbersAreValid)
{
    int number = 0;
    for (const float value : {0.0f, 1.0f, -1.0f, 7.5f, 1e30f, -1e30f, NAN, INFINITY, -INFINITY}) {
        const std::string name = "s" + std::to_string(number++);
        float v = value;
        int32_t shininess = value > 0 ? 2000000000 : -5;
        float color[3] = {value, 0.5f, value};
        Tv_Surface(name.c_str(), w("color"), w("rgb"), color, 0);
        Tv_Surface(name.c_str(), w("model"), w("phong"), w("shininess"), &shininess, w("metal"), &v, 1,
                   w("shadingcoeffs"), w("ambient"), &v, w("diffuse"), &v, w("specular"), &v, w("luminous"), &v,
                   w("reflect"), &v, w("ior"), &v, 1, 0);
        Tv_Surface(name.c_str(), w("opacity"), w("facecoeff"), &v, 0);
        Tv_Surface(name.c_str(), w("opacity"), w("edgecoeff"), &v, w("edgeexp"), &v, w("edge"), w("enabled"), w("on"),
                   0);
        object(name, triangle_shape(), name);
        instance(name, name);
    }
    const GltfFile file = write();
    EXPECT_EQ(file.json["materials"].size(), 9u);
    EXPECT_EQ(file.json.dump().find("null"), std::string::npos) << "what isn't a number would stand as null";
}
