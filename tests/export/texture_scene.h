// A directory with pictures and a scene with one surface, for tests of what its layers become.
#pragma once
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <string>

#include "export/gltf/image/image_library.h"
#include "export/gltf/image/image_png.h"
#include "export/gltf/material/surface_textures.h"
#include "lib/platform/files.h"
#include "tests/export/picture_files.h"

namespace test {

using Rgba = std::array<unsigned char, 4>;

class TextureScene : public testing::Test {
protected:
    void SetUp() override
    {
        char name[] = "/tmp/textures_test_XXXXXX";
        ASSERT_TRUE(mkdtemp(name));
        root = std::filesystem::canonical(name).string();
        options.image_directories = {root};
        scene.surfaces.emplace_back();
        surface().name = "hull";
        frame.enabled = true; // the unit square of X and Y
    }

    void TearDown() override
    {
        std::filesystem::remove_all(root);
        platform::forget_directories();
    }

    void write(const std::string& file, const std::string& bytes)
    {
        const std::filesystem::path path = root + "/" + file;
        std::filesystem::create_directories(path.parent_path());
        std::ofstream(path, std::ios::binary) << bytes;
        platform::forget_directories();
    }

    // A PNG of these pixels, row by row from the top.
    void write_picture(const std::string& file, uint32_t width, const std::vector<Rgba>& colors)
    {
        gltf::Pixels pixels = gltf::make_pixels(width, static_cast<uint32_t>(colors.size()) / width);
        for (std::size_t i = 0; i < colors.size(); i++)
            std::copy(colors[i].begin(), colors[i].end(), pixels.at(0, 0) + i * 4);
        const std::vector<unsigned char> png = gltf::encode_png(pixels);
        write(file, {png.begin(), png.end()});
    }

    tv::Surface& surface() { return scene.surfaces[0]; }

    tv::Id add_image(const std::string& file)
    {
        tv::Texture texture;
        texture.name = "texture: " + file;
        texture.kind = tv::TextureKind::image;
        texture.file_name = file;
        texture.mipmap = true;
        scene.textures.push_back(texture);
        return static_cast<tv::Id>(scene.textures.size() - 1);
    }

    tv::Id add_procedural(const std::string& name, const tv::Vec3& color1, const tv::Vec3& color2, float param1 = 1,
                          float param2 = 1)
    {
        tv::Texture texture;
        texture.name = "procedural: " + name;
        texture.kind = tv::TextureKind::procedural;
        texture.procedural = name;
        texture.color1 = color1;
        texture.color2 = color2;
        texture.param1 = param1;
        texture.param2 = param2;
        scene.textures.push_back(texture);
        return static_cast<tv::Id>(scene.textures.size() - 1);
    }

    // A layer that modulates this channel alone, as importers state it.
    tv::Layer& add_layer(tv::Id texture, tv::LayerChannel channel)
    {
        tv::Layer layer;
        layer.name = "layer " + std::to_string(surface().layers.size() + 1);
        layer.texture = texture;
        layer.texture_name = texture < scene.textures.size() ? scene.textures[texture].name : "texture: gone";
        of(layer, tv::LayerChannel::color).stated = true;
        of(layer, channel).stated = of(layer, channel).enabled = true;
        surface().layers.push_back(layer);
        return surface().layers.back();
    }

    static tv::Layer::Modulation& of(tv::Layer& layer, tv::LayerChannel channel)
    {
        return layer.channels[static_cast<std::size_t>(channel)];
    }

    gltf::SurfaceTextures made(bool inside = false)
    {
        maker = std::make_unique<gltf::SurfaceTextureMaker>(scene, options, report);
        return maker->textures(0, &frame, inside);
    }

    // The pixels of an image as a viewer decodes them, row by row.
    static std::vector<Rgba> shown(const std::optional<gltf::TextureSlot>& slot)
    {
        if (!slot || !slot->image) return {};
        const gltf::DecodeResult decoded = gltf::decode_image(slot->image->bytes);
        EXPECT_EQ(decoded.error, "");
        EXPECT_EQ(decoded.pixels.width, slot->image->width);
        EXPECT_EQ(decoded.pixels.height, slot->image->height);
        std::vector<Rgba> colors;
        for (std::size_t i = 0; i < decoded.pixels.rgba.size(); i += 4) {
            const unsigned char* const p = decoded.pixels.rgba.data() + i;
            colors.push_back({p[0], p[1], p[2], p[3]});
        }
        return colors;
    }

    bool noted(const std::string& part) const
    {
        for (const messages::Message& note : report.notes)
            if (messages::text(note).find(part) != std::string::npos) return true;
        return false;
    }

    std::string root;
    tv::Scene scene;
    gltf::Options options;
    gltf::Report report;
    tv::TextureProjection frame;
    std::unique_ptr<gltf::SurfaceTextureMaker> maker;
};

} // namespace test
