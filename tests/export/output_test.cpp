// The file around the scene: containers, names, what is told of source and options.
#include <fstream>
#include <iterator>

#include "tests/export/scene_builder.h"

namespace fs = std::filesystem;

namespace {

using Output = Export;

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
    const gltf::Tables tables = gltf::make_tables(tv::scene(), {}).tables;
    gltf::write_file(tables, out);
    const auto json = nlohmann::json::parse(content(out));
    EXPECT_EQ(json["buffers"][0]["uri"], "Output.SeparateFilesHoldTheSame%20with%20%C3%A9%20and%20blanks.bin");
    EXPECT_EQ(content(fs::path(out).replace_extension(".bin")), glb.bytes);

    std::vector<unsigned char> bytes = gltf::file_bytes(tables, "gltf");
    std::ofstream(file_name(".gltf", " inside"), std::ios::binary)
        .write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    const auto inside = nlohmann::json::parse(bytes);
    EXPECT_TRUE(inside["buffers"][0]["uri"].get<std::string>().starts_with("data:application/octet-stream;base64,"));
    bytes = gltf::file_bytes(tables, "glb");
    EXPECT_EQ(std::string(bytes.begin(), bytes.end()), content(file_name(".glb")));
    EXPECT_NE(failure_of([&] { gltf::file_bytes(tables, "obj"); }), "");
    EXPECT_EQ(failure_of([&] { gltf::write_file(tables, "a.obj"); }),
              "can't tell what to write from the name 'a.obj': it has to end in .glb or .gltf");
}

TEST_F(Output, TheSceneThatIsGivenIsWrittenAndNoOther)
{
    instance("of the toolkit's scene");
    tv::Scene own;
    own.instances.emplace_back().name = "world";
    tv::Instance& thing = own.instances.emplace_back();
    thing.name = "thing";
    thing.parent_kind = tv::Kind::instance;
    thing.parent = 0;
    own.instances[0].children = {1, 1, 1};
    const gltf::Tables tables = gltf::make_tables(own, {}).tables;
    ASSERT_EQ(tables.nodes.size(), 1u);
    EXPECT_EQ(tables.nodes[0].name, "thing");
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

TEST_F(Output, ProgressIsToldToTheEndAndMayStop)
{
    object("thing", cube_shape());
    for (int i = 0; i < 1000; ++i) instance("thing " + std::to_string(i), "thing");
    gltf::Options options;
    std::size_t last = 0, total = 0;
    options.progress = [&](std::size_t done, std::size_t all) {
        EXPECT_GE(done, last);
        last = done;
        total = all;
        return done > 300;
    };
    EXPECT_TRUE(gltf::make_tables(tv::scene(), options).report.stopped);
    EXPECT_LT(last, 1000u);
    options.progress = [&](std::size_t done, std::size_t) {
        last = done;
        return false;
    };
    EXPECT_FALSE(gltf::make_tables(tv::scene(), options).report.stopped);
    EXPECT_EQ(last, total) << "the end is told";
}
