// Writes the files that the cases run on into the directory given: make_cli_fixtures DIR
#include <cstdio>
#include <filesystem>
#include <string>

#include "tools/lwob_writer.h"

namespace fs = std::filesystem;
using namespace lw_tools;

static std::string square(const std::string& surface_name, const std::string& image = "")
{
    ObjectWriter object;
    object.surface_names = {surface_name};
    for (const auto& [x, y] : {std::pair{0.F, 0.F}, {1.F, 0.F}, {1.F, 1.F}, {0.F, 1.F}}) object.point(x, y, 0);
    object.polygon({0, 1, 2, 3});
    SurfaceWriter surface(surface_name);
    surface.color(200, 100, 50);
    if (!image.empty())
        surface.text("CTEX", "Planar Image Map").u16("TFLG", 4).vec("TSIZ", 1, 1, 1).text("TIMG", image);
    object.surfaces.push_back(surface);
    return object.to_bytes();
}

// Points that say there are more of them than the file has bytes.
static std::string cut_in_points()
{
    const std::string whole = square("hull");
    return whole.substr(0, whole.find("PNTS") + 8 + 5);
}

static std::string scene(const std::string& version, const std::string& body)
{
    return "LWSC\n" + version + "\n\nFirstFrame 1\nLastFrame 30\nFrameStep 1\nFramesPerSecond 30.000000\n\n" + body;
}

static std::string placed(const std::string& keyword_and_name)
{
    return keyword_and_name + "\nObjectMotion (unnamed)\n  9\n  1\n  0 0 0 0 0 0 1 1 1\n  0 0 0 0 0\nEndBehavior 1\n\n";
}

static void write(const fs::path& path, const std::string& bytes)
{
    fs::create_directories(path.parent_path());
    write_file(path.string(), bytes);
}

int main(int argc, char** argv)
{
    if (argc != 2) return 2;
    const fs::path in = argv[1];
    fs::remove_all(in);

    write(in / "ship.lwo", square("hull"));
    write(in / "painted.lwo", square("skin", "Images:Metal/rust.lbm"));
    write(in / "Überfall.lwo", square("gr\xfcn"));
    write(in / "note.txt", "Dear diary, nothing here is a polygon.\n");
    write(in / "empty.lwo", "");
    write(in / "picture.iff", "FORM" + std::string("\0\0\0\x0cILBMBMHD", 12));
    write(in / "newer.lwo", "FORM" + std::string("\0\0\0\x0cLWO2TAGS\0\0\0\0", 16));
    write(in / "zero.lwo", "FORM" + std::string("\0\0\0\0LWOB", 8));
    write(in / "head.lwo", "FORM" + std::string("\0\0\0\x40", 4));
    write(in / "cut.lwo", cut_in_points());

    // An archive as they were: a content directory that the scene doesn't name, letters in any case.
    const fs::path archive = in / "archive";
    write(archive / "Objects/Space/Gate/GateRing.lwo", square("ring"));
    write(archive / "Objects/Ship.LWO", square("hull", "rust.iff"));
    write(archive / "Scenes/harbour.lws",
          scene("1", placed("LoadObject OBJECTS\\SPACE\\Gate\\GateRing") + placed("LoadObject Objects/ship.lwo") +
                         placed("LoadObject Objects/ship.lwo") + placed("LoadObject Toys:Objects/Lost") +
                         "AddLight\nLightName Sun\nLightColor 255 255 255\nLgtIntensity 1.0\nLightType 0\n"));
    write(archive / "Scenes/whole.lws", scene("1", placed("LoadObject OBJECTS\\SPACE\\Gate\\GateRing")));
    write(archive / "elsewhere/lost.lwo", square("found"));

    write(in / "later.lws", scene("3", placed("LoadObject ship.lwo")));
    write(in / "broken.lws", scene("1", placed("LoadObject ship.lwo") + "ZoomFactor wide\n"));
    write(in / "outside/inner/scene.lws", scene("1", placed("LoadObject ../../ship.lwo")));
    write(in / "twins/ship.lwo", square("one"));
    write(in / "twins/ship.lws", scene("1", placed("LoadObject ship.lwo")));
    write(in / "twins/readme.txt", "neither\n");
    fs::create_directories(in / "nothing");
    write(in / "nothing/readme.txt", "neither\n");
    return 0;
}
