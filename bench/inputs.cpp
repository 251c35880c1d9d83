#include "bench/inputs.h"

#include <filesystem>
#include <string_view>

#include "tools/lwob_writer.h"

namespace bench {

using lw_tools::Bytes;

static void make_once(const std::string& path, const std::string& bytes)
{
    if (!std::filesystem::exists(path)) lw_tools::write_file(path, bytes);
}

void write_object(const std::string& path, const ObjectSize& size)
{
    std::vector<std::string> names;
    for (std::size_t i = 0; i < size.surfaces; ++i) names.push_back("Surface " + std::to_string(i + 1));
    std::vector<float> points;
    for (std::size_t i = 0; i < size.points; ++i) {
        points.insert(points.end(),
                      {static_cast<float>(i % 256), static_cast<float>(i / 256), static_cast<float>(i % 7)});
    }
    Bytes polygons;
    for (std::size_t i = 0; i < size.polygons; ++i) {
        // Neighbours share points, and so do the polygons of a surface: as if the object were 2,000 patches.
        const std::size_t patch = i / 10 % 2000, patches_points = (size.points - 257) / 2000 + 1;
        const std::size_t first = (patch * patches_points + i % patches_points) % (size.points - 257);
        polygons.u16(3).u16(static_cast<unsigned>(first)).u16(static_cast<unsigned>(first + 256));
        polygons.u16(static_cast<unsigned>(first + 257)).u16(static_cast<unsigned>(patch % size.surfaces + 1));
    }
    std::vector<std::string> chunks = {lw_tools::chunk("SRFS", lw_tools::surface_names_body(names)),
                                       lw_tools::chunk("PNTS", lw_tools::points_body(points)),
                                       lw_tools::chunk("POLS", polygons)};
    for (const std::string& name : names) {
        chunks.push_back(lw_tools::surface_chunk(lw_tools::SurfaceWriter(name).color(200, 180, 160).u16("DIFF", 256)));
    }
    make_once(path, lw_tools::form(chunks));
}

void write_ignored_keywords(const std::string& path, std::size_t bytes)
{
    constexpr std::string_view block = "ShowObject 7 7\nTextureSize 300 300.25 300\nTextureAmplitude 0.0600761\n"
                                       "LockedChannels 54\nTextureValue -29.3434 12.5 1 -2.1e-006\nFlareDissolve 0\n"
                                       "ShadowOptions 7\nRenderMode 2\nFilmSize 2\nSaveAnimationName D:\\Anim\\x.avi\n"
                                       "LayoutGrid 8.000000\nFieldRendering 0\nBlurLength 0.500000\n";
    std::string text = "LWSC\n1\n\n";
    text.reserve(bytes + block.size());
    while (text.size() < bytes) text += block;
    make_once(path, text);
}

static void append_motion(std::string& text, const char* keyword, std::size_t keys)
{
    text += std::string(keyword) + " (unnamed)\n  9\n  " + std::to_string(keys) + '\n';
    for (std::size_t i = 0; i < keys; ++i) {
        text += "  " + std::to_string(i % 100) + ".25 1 -2.5 " + std::to_string(i % 90) + " 0 0 1 1 1\n  " +
                std::to_string(i) + " 0 0.5 0 0\n";
    }
    text += "EndBehavior 1\n";
}

static void load(std::string& text, const std::string& name)
{
    text += "LoadObject " + name + '\n';
    append_motion(text, "ObjectMotion", 1);
}

void write_scene(const std::string& path, const SceneSize& size)
{
    const std::string beside = std::filesystem::path(path).parent_path().string() + "/";
    std::string text = "LWSC\n1\n\nFirstFrame 0\nLastFrame 100\nFrameStep 1\nFramesPerSecond 30.000000\n\n";
    for (std::size_t i = 1; i <= size.nulls; ++i) {
        text += "AddNullObject null\n";
        append_motion(text, "ObjectMotion", size.keys);
        const std::size_t parent = size.tree == SceneSize::chain                 ? i - 1
                                   : size.tree == SceneSize::one_parent && i > 1 ? 1
                                                                                 : 0;
        if (parent) text += "ParentObject " + std::to_string(parent) + '\n';
    }
    if (size.loads) write_object(beside + "part.lwo", {400, 100, 1});
    for (std::size_t i = 0; i < size.loads; ++i) load(text, "part.lwo");
    for (std::size_t i = 0; i < size.distinct; ++i) {
        const std::string name = "part_" + std::to_string(i) + ".lwo";
        write_object(beside + name, {400, 100, 2});
        load(text, name);
    }
    for (std::size_t i = 0; i < size.big; ++i) {
        const std::string name = "big_" + std::to_string(i) + ".lwo";
        write_object(beside + name, {65535, 65535, 1});
        load(text, name);
    }
    for (std::size_t i = 0; i < size.lights; ++i) {
        text += "AddLight\nLightName light\n";
        append_motion(text, "LightMotion", 1);
        text += "LightColor 255 255 255\nLgtIntensity 0.5\nLightType 2\n";
    }
    if (size.camera_keys) append_motion(text, "CameraMotion", size.camera_keys);
    make_once(path, text);
}

} // namespace bench
