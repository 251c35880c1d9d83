#include "tests/export/scene_builder.h"

#include "lib/toolkit/scene/channels.h"

namespace fs = std::filesystem;

void Export::surface(const std::string& name, std::array<float, 3> color)
{
    Tv_Surface(name.c_str(), w("color"), w("rgb"), color.data(), 0);
}

void Export::object(const std::string& name, const Shape& shape, const std::string& surface, float smooth_degrees)
{
    std::vector<float> points;
    std::vector<int32_t> sizes, corners;
    for (const auto& point : shape.points) points.insert(points.end(), point.begin(), point.end());
    for (const auto& polygon : shape.polygons) {
        sizes.push_back(static_cast<int32_t>(polygon.size()));
        corners.insert(corners.end(), polygon.begin(), polygon.end());
    }
    std::vector<const char*> surfaces;
    for (const std::string& one : shape.surfaces) surfaces.push_back(one.empty() ? nullptr : one.c_str());
    int32_t count = static_cast<int32_t>(sizes.size()), point_count = static_cast<int32_t>(shape.points.size());
    int32_t offset = 0;
    Tv_Object_Define(name.c_str(), 0);
    Tv_Primitive(w("indexedpolygons"), w("numpolygons"), &count, 1, w("verticesperpoly"), sizes.data(), 1,
                 w("indiceoffset"), &offset, 1, w("clockwise"), w("enabled"), shape.clockwise ? w("on") : w("off"), 1,
                 w("vertex"), &point_count, points.data(), corners.data(), 1, w("surfacelink"),
                 surfaces.empty() ? nullptr : surfaces.data(), 1, 0);
    Tv_Object_End(0);
    if (smooth_degrees > 0)
        Tv_Manipulate_IndexedPolygons(name.c_str(), 0, w("calcnormals"), w("angle"), &smooth_degrees, 0);
    if (!surface.empty()) Tv_Surfacelink(w("surface"), surface.c_str(), w("object"), name.c_str(), 0);
}

void Export::instance(const std::string& name, const std::string& object, const std::string& parent,
                      const char* parent_kind)
{
    if (object.empty())
        Tv_Add_Empty_Node(w("instance"), name.c_str(), 0);
    else
        Tv_Add_Instance(w("instance"), name.c_str(), w("object"), object.c_str(), 0);
    Tv_Attach(w("instance"), name.c_str(), w(parent_kind), parent.c_str(), 0);
}

void Export::place(const std::string& name, const std::array<float, 16>& matrix)
{
    Tv_Instance(name.c_str(), w("resetmatrix"), 0);
    Tv_Transform(w("instance"), name.c_str(), w("postmultiply"), w("matrix"), matrix.data(), 0);
}

void Export::pivot(const std::string& name, float px, float py, float pz)
{
    Tv_Local_Axes* axes = nullptr;
    Tv_Inquire_Instance(name.c_str(), w("localaxes"), &axes, 0);
    axes->axes_matrix[3][0] = px;
    axes->axes_matrix[3][1] = py;
    axes->axes_matrix[3][2] = pz;
    axes->origin_enabled = 1;
    Tv_Instance(name.c_str(), w("localaxes"), axes, 0);
}

namespace {

void add_keys(void* channel, const std::vector<TestKey>& keys, const char* end)
{
    ASSERT_NE(channel, nullptr);
    int32_t scratch = 0;
    for (TestKey key : keys) {
        int32_t id = 0;
        float none = 0;
        Tv_AnimController(&scratch, w("ctrlrid"), channel, w("type"), w("kftcb"), 1, w("preextraptype"), w(end), 1,
                          w("postextraptype"), w(end), 1, w("keyframe"), &id, w("time"), &key.time, w("add"), w("tcb"),
                          w("tension"), &key.tension, w("tcb"), w("cont"), &key.continuity, w("tcb"), w("bias"),
                          &key.bias, w("tcb"), w("easefrom"), &none, w("tcb"), w("easeto"), &none, 1, 0);
        ASSERT_NE(id, 0);
        Tv_AnimController(&scratch, w("ctrlrid"), channel, w("keyframe"), &id, w("kfid"), id, w("value"), &key.value, 1,
                          0);
    }
}

} // namespace

void Export::keys(const std::string& name, std::size_t slot, const std::vector<TestKey>& keys, const char* end)
{
    Tv_Instance(name.c_str(), w("replacechannels"), w("eulerrotate"), 0);
    add_keys(tv::instance_channel(tv::scene().find(tv::Kind::instance, name), slot), keys, end);
}

void Export::camera_keys(const std::string& name, std::size_t slot, const std::vector<TestKey>& keys, const char* end)
{
    add_keys(tv::camera_channel(tv::scene().find(tv::Kind::camera, name), slot), keys, end);
}

void Export::time_line(int32_t first_frame, int32_t last_frame, int32_t rate)
{
    int32_t start = first_frame * 4800 / rate, end = last_frame * 4800 / rate;
    Tv_Animation(w("framerate"), &rate, 0);
    Tv_Animation(w("starttime"), &start, 0);
    Tv_Animation(w("endtime"), &end, 0);
}

fs::path Export::file_name(const std::string& ending, const std::string& suffix) const
{
    const auto* const info = testing::UnitTest::GetInstance()->current_test_info();
    const fs::path folder = fs::path(BUILD_DIR) / "tests" / "export_files";
    fs::create_directories(folder);
    return folder / (std::string(info->test_suite_name()) + "." + info->name() + suffix + ending);
}

GltfFile Export::write(const gltf::Options& options)
{
    const fs::path path = file_name(".glb");
    gltf::MadeTables made = gltf::make_tables(tv::scene(), options);
    report = std::move(made.report);
    gltf::write_file(made.tables, path);
    return GltfFile::read(path);
}

std::string Export::notes() const
{
    std::string text;
    for (const messages::Message& note : report.notes) text += messages::text(note) + "\n";
    return text;
}

Shape triangle_shape()
{
    return {{{0, 0, 0}, {0, 1, 0}, {1, 0, 0}}, {{1, 2, 3}}, {}, true};
}

Shape cube_shape()
{
    Shape cube;
    for (int i = 0; i < 8; ++i)
        cube.points.push_back({(i & 1) != 0 ? 1.0f : -1.0f, (i & 2) != 0 ? 1.0f : -1.0f, (i & 4) != 0 ? 1.0f : -1.0f});
    cube.polygons = {{5, 7, 8, 6}, {1, 2, 4, 3}, {2, 6, 8, 4}, {1, 3, 7, 5}, {3, 4, 8, 7}, {1, 5, 6, 2}};
    return cube;
}
