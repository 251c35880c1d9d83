#include <csignal>
#include <sys/resource.h>
#include <unistd.h>

#include <fstream>
#include <iterator>

#include "lib/platform/atomic_file.h"
#include "tests/export/scene_builder.h"

namespace fs = std::filesystem;

namespace {

std::string content(const fs::path& path)
{
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

std::string failure_of(const std::function<void()>& work)
{
    try {
        work();
    } catch (const std::runtime_error& error) {
        return error.what();
    }
    return "";
}

class Output : public Export {
protected:
    void SetUp() override
    {
        Export::SetUp();
        folder_ = fs::temp_directory_path() / ("export_test." + std::to_string(getpid()));
        fs::create_directories(folder_);
    }
    void TearDown() override
    {
        fs::remove_all(folder_);
        Export::TearDown();
    }
    std::vector<std::string> files() const
    {
        std::vector<std::string> names;
        for (const auto& entry : fs::directory_iterator(folder_)) names.push_back(entry.path().filename().string());
        std::sort(names.begin(), names.end());
        return names;
    }
    fs::path folder_;
};

} // namespace

TEST_F(Output, EmptySceneIsAFile)
{
    const GltfFile file = write();
    EXPECT_TRUE(file.bytes.empty());
    EXPECT_EQ(file.json["asset"]["version"], "2.0");
    for (const auto& [name, value] : file.json.items()) EXPECT_FALSE(value.is_array() && value.empty()) << name;
}

TEST_F(Output, NamesAreUtf8)
{
    instance("caf\xe9 \"\x01\"");
    EXPECT_TRUE(write().node("caf\xc3\xa9 \"\x01\""));
}

TEST_F(Output, SeparateFilesHoldTheSame)
{
    object("thing", cube_shape());
    instance("thing", "thing");
    keys("thing", x, {{0, 0}, {4800, 1}});
    time_line(0, 30);
    const GltfFile glb = write();
    const fs::path out = file_name(".gltf", " with \xc3\xa9 and blanks");
    gltf::write_scene(tv::scene(), out, {});
    const auto json = nlohmann::json::parse(content(out));
    EXPECT_EQ(json["buffers"][0]["uri"], "Output.SeparateFilesHoldTheSame%20with%20%C3%A9%20and%20blanks.bin");
    EXPECT_EQ(content(fs::path(out).replace_extension(".bin")), glb.bytes);

    std::vector<unsigned char> bytes;
    gltf::write_scene(tv::scene(), "gltf", {}, bytes);
    std::ofstream(file_name(".gltf", " inside"), std::ios::binary)
        .write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    const auto inside = nlohmann::json::parse(bytes);
    EXPECT_TRUE(inside["buffers"][0]["uri"].get<std::string>().starts_with("data:application/octet-stream;base64,"));
    gltf::write_scene(tv::scene(), "glb", {}, bytes);
    EXPECT_EQ(std::string(bytes.begin(), bytes.end()), content(file_name(".glb")));
    EXPECT_NE(failure_of([&] { gltf::write_scene(tv::scene(), "obj", {}, bytes); }), "");
}

TEST_F(Output, SourceAndOptionsAreTold)
{
    instance("thing");
    keys("thing", x, {{0, 0}, {4800, 1}});
    gltf::Options options;
    options.source_name = "fl\xc3\xbcge.lws";
    options.generator = "lwimport 1.2";
    const GltfFile file = write(options);
    EXPECT_EQ(file.json["asset"]["generator"], "lwimport 1.2");
    EXPECT_EQ(file.json["asset"]["extras"]["source"], "fl\xc3\xbcge.lws");
    EXPECT_EQ(file.json["animations"][0]["name"], "fl\xc3\xbcge.lws");
    options.scale = 0;
    EXPECT_EQ(failure_of([&] { write(options); }), "the scale has to be a number above 0");
}

TEST_F(Output, AFullDiskLeavesWhatWasThere)
{
    object("thing", cube_shape());
    instance("thing", "thing");
    const fs::path device = folder_ / "full.glb";
    fs::create_symlink("/dev/full", device);
    EXPECT_EQ(failure_of([&] { gltf::write_scene(tv::scene(), device, {}); }),
              "can't write '" + device.string() + "': No space left on device");

    // A file that may not grow stands for a disk that fills up half-way: a real file, with its temporary one beside it.
    const fs::path out = folder_ / "old.glb";
    std::ofstream(out) << "old";
    rlimit before{};
    ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &before), 0);
    signal(SIGXFSZ, SIG_IGN);
    const rlimit small{1000, before.rlim_max};
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &small), 0);
    const std::string failure = failure_of([&] { gltf::write_scene(tv::scene(), out, {}); });
    setrlimit(RLIMIT_FSIZE, &before);
    EXPECT_EQ(failure, "can't write '" + out.string() + "': File too large");
    EXPECT_EQ(content(out), "old");
    EXPECT_EQ(files(), (std::vector<std::string>{"full.glb", "old.glb"})) << "no temporary file stays";
}

TEST_F(Output, PlacesThatCantBeWrittenAreNamed)
{
    EXPECT_EQ(failure_of([&] { gltf::write_scene(tv::scene(), folder_ / "no" / "a.glb", {}); }),
              "can't write '" + (folder_ / "no" / "a.glb").string() + "': No such file or directory");
    fs::create_directory(folder_ / "dir.glb");
    EXPECT_EQ(failure_of([&] { gltf::write_scene(tv::scene(), folder_ / "dir.glb", {}); }),
              "can't write '" + (folder_ / "dir.glb").string() + "': Is a directory");
    EXPECT_EQ(failure_of([&] { gltf::write_scene(tv::scene(), folder_ / "a.obj", {}); }),
              "can't tell what to write from the name '" + (folder_ / "a.obj").string() +
                  "': it has to end in .glb, .gltf or .json");
}

TEST_F(Output, LinksAreFollowedAndPermissionsKept)
{
    std::ofstream(folder_ / "real.glb") << "old";
    fs::permissions(folder_ / "real.glb", fs::perms::owner_read | fs::perms::owner_write);
    fs::create_symlink("real.glb", folder_ / "link.glb");
    gltf::write_scene(tv::scene(), folder_ / "link.glb", {});
    EXPECT_TRUE(fs::is_symlink(folder_ / "link.glb"));
    EXPECT_EQ(content(folder_ / "real.glb").substr(0, 4), "glTF");
    EXPECT_EQ(fs::status(folder_ / "real.glb").permissions(), fs::perms::owner_read | fs::perms::owner_write);
}

TEST_F(Output, AStopWritesNothing)
{
    object("thing", cube_shape());
    for (int i = 0; i < 1000; ++i) instance("thing " + std::to_string(i), "thing");
    const fs::path out = folder_ / "a.glb";
    gltf::Options options;
    std::size_t last = 0, total = 0;
    options.progress = [&](std::size_t done, std::size_t all) {
        EXPECT_GE(done, last);
        last = done;
        total = all;
        return done > 300;
    };
    EXPECT_TRUE(gltf::write_scene(tv::scene(), out, options).stopped);
    EXPECT_TRUE(files().empty());
    EXPECT_LT(last, 1000u);
    options.progress = [&](std::size_t done, std::size_t) {
        last = done;
        return false;
    };
    EXPECT_FALSE(gltf::write_scene(tv::scene(), out, options).stopped);
    EXPECT_EQ(last, total) << "the end is told";
}

TEST_F(Output, TheDumpHoldsTheSceneAsItIs)
{
    surface("paint");
    object("th\xefng", cube_shape(), "paint", 40);
    instance("thing", "th\xefng");
    instance("child", "", "thing");
    keys("thing", x, {{0, 0.1f}, {4800, INFINITY, 0.5f}}, "cycle");
    pivot("thing", 1, 2, 3);
    const fs::path out = folder_ / "a.json";
    gltf::write_scene(tv::scene(), out, {});
    EXPECT_EQ(content(out), gltf::dump_scene(tv::scene()));
    const auto json = nlohmann::json::parse(content(out));
    EXPECT_EQ(json["objects"][0]["name"], "th\xc3\xafng");
    EXPECT_EQ(json["objects"][0]["primitives"][0]["corners"].size(), 24u);
    EXPECT_EQ(json["objects"][0]["smoothingAngle"], 40);
    EXPECT_EQ(json["objects"][0]["surface"], "paint");
    const auto& thing = json["instances"][1];
    EXPECT_EQ(thing["parent"], "world");
    EXPECT_EQ(thing["children"], nlohmann::json({"child"}));
    EXPECT_EQ(thing["axes"]["matrix"][13], 2);
    EXPECT_EQ(thing["channels"]["position"][0]["keys"][0]["value"], 0.1);
    EXPECT_EQ(thing["channels"]["position"][0]["keys"][1]["value"], "inf");
    EXPECT_EQ(thing["channels"]["position"][0]["after"], "cycle");
    EXPECT_EQ(json["lights"][0]["name"], "defaultambient");
    EXPECT_EQ(json["timeLine"]["frameRate"], 30);
}
