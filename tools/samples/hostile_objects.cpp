// Objects as damaged disks, broken writers and ill will make them. Each must end in a message or in a part of the
// object, never in a crash; what stands before the damage is good.
#include <cmath>
#include <limits>
#include <numbers>

#include "tools/samples/samples.h"
#include "tools/samples/shapes.h"

namespace samples {

using lw_tools::Bytes;
using lw_tools::chunk;
using lw_tools::form;
using lw_tools::SurfaceWriter;

namespace {

// A small tetrahedron on one surface, in parts.
struct Parts {
    std::string names, points, polygons, surface;
    std::string whole() const { return form({names, points, polygons, surface}); }
};

const std::vector<float> tetrahedron_points = {0, 1, 0, -1, 0, -1, 1, 0, -1, 0, 0, 1};

Bytes tetrahedron_polygons()
{
    return lw_tools::polygons_body({{{0, 2, 1}, 1, {}}, {{0, 3, 2}, 1, {}}, {{0, 1, 3}, 1, {}}, {{1, 2, 3}, 1, {}}});
}

Parts tetrahedron()
{
    return {chunk("SRFS", lw_tools::surface_names_body({"Skin"})),
            chunk("PNTS", lw_tools::points_body(tetrahedron_points)), chunk("POLS", tetrahedron_polygons()),
            lw_tools::surface_chunk(plain_surface("Skin", {.red = 80, .green = 160, .blue = 90}))};
}

std::string with_size(std::string chunk_bytes, uint32_t size)
{
    return chunk_bytes.replace(4, 4, Bytes().u32(size).str());
}

void heads_and_sizes(const std::string& directory)
{
    const Parts good = tetrahedron();
    const std::string whole = good.whole();
    const auto write = [&](const std::string& name, const std::string& bytes) {
        lw_tools::write_file(directory + "/" + name + ".lwo", bytes);
    };
    write("empty_file_is_not_ours", "");
    write("three_bytes_are_not_ours", "FOR");
    write("form_of_another_type_is_refused", Bytes().id("FORM").u32(4).id("ILBM").str());
    write("form_length_zero_is_refused", Bytes().id("FORM").u32(0).raw(whole.substr(8)).str());
    write("form_length_too_long_reports_corrupt", Bytes().id("FORM").u32(100'000).raw(whole.substr(8)).str());
    write("form_length_too_short_reports_corrupt", Bytes().id("FORM").u32(60).raw(whole.substr(8)).str());
    write("chunk_size_negative_reports_corrupt",
          form({good.names, with_size(good.points, 0x80000010u), good.polygons, good.surface}));
    write("chunk_size_too_big_reports_corrupt",
          form({good.names, with_size(good.points, 2'000'000), good.polygons, good.surface}));
    write("chunk_size_within_margin_reads_error", form({with_size(good.points, 200)}));
    write("chunk_name_unprintable_reports_corrupt",
          form({good.names, good.points, Bytes().raw("\x01\x02\x03\x04").u32(2).u16(0).str(), good.polygons}));
    write("chunk_unknown_is_skipped",
          form({good.names, chunk("CRVS", Bytes().u16(1).u8(2)), good.points, good.polygons, good.surface}));
    write("file_cut_in_points_reads_error", whole.substr(0, 12 + good.names.size() + 8 + 20));
    write("file_cut_in_polygons_ends", whole.substr(0, 12 + good.names.size() + good.points.size() + 8 + 13));
    write("file_cut_in_surface_ends", whole.substr(0, whole.size() - 9));
}

void points_and_polygons(const std::string& directory)
{
    const Parts good = tetrahedron();
    const auto write = [&](const std::string& name, const std::vector<std::string>& chunks) {
        lw_tools::write_file(directory + "/" + name + ".lwo", form(chunks));
    };
    const auto polygons = [](Bytes extra) { return chunk("POLS", tetrahedron_polygons().raw(extra)); };
    const auto with_polygons = [&](const std::string& name, Bytes extra) {
        write(name, {good.names, good.points, polygons(std::move(extra)), good.surface});
    };
    with_polygons("polygon_indices_out_of_range_are_dropped", Bytes().u16(3).u16(0).u16(1).u16(65535).u16(1));
    with_polygons("polygon_count_negative_is_dropped", Bytes().u16(0x8000).u16(1).u16(3).u16(1).u16(2).u16(3).u16(1));
    with_polygons("polygon_one_point_many_times_is_dropped", Bytes().u16(4).u16(2).u16(2).u16(2).u16(2).u16(1));
    with_polygons("polygons_odd_size_ends", Bytes().u16(3).u16(0).u16(1).u8(0));
    with_polygons("polygons_without_last_surface_take_the_first", Bytes().u16(3).u16(1).u16(2).u16(3));
    with_polygons("polygon_surface_zero_ends", Bytes().u16(3).u16(1).u16(2).u16(3).u16(0));
    with_polygons("polygon_surface_too_high_takes_the_last", Bytes().u16(3).u16(1).u16(2).u16(3).u16(99));
    with_polygons("detail_count_huge_ends", Bytes().u16(3).u16(1).u16(2).u16(3).u16(0xffff).u16(0x7fff));
    Bytes nested; // details of details of details
    for (int i = 0; i < 50; ++i) nested.u16(3).u16(1).u16(2).u16(3).u16(0xffff).u16(1);
    with_polygons("details_nested_deep_are_read_flat", nested.u16(3).u16(1).u16(2).u16(3).u16(1));
    std::vector<float> circle; // and a star in it, each edge crossing nearly all others
    Bytes star;
    constexpr uint16_t corners = 2001;
    star.u16(corners);
    for (uint16_t i = 0; i < corners; ++i) {
        const double angle = 2 * std::numbers::pi * i / corners;
        circle.insert(circle.end(), {static_cast<float>(std::cos(angle)), static_cast<float>(std::sin(angle)), 0});
        star.u16(static_cast<uint16_t>(i * 1000 % corners));
    }
    write("polygon_of_2001_crossing_corners_is_filled_roughly",
          {good.names, chunk("PNTS", lw_tools::points_body(circle)), chunk("POLS", star.u16(1)), good.surface});
    write("polygons_before_surface_names_end", {good.points, good.polygons, good.names, good.surface});
    write("polygons_without_points_warn", {good.names, good.polygons, good.surface});
    write("points_without_polygons_warn", {good.names, good.points, good.surface});
    write("points_size_not_of_twelves_loses_the_rest",
          {good.names, chunk("PNTS", lw_tools::points_body(tetrahedron_points).u32(0).u16(0)), good.polygons,
           good.surface});
    constexpr float infinity = std::numeric_limits<float>::infinity();
    std::vector<float> bad = tetrahedron_points;
    bad.insert(bad.end(),
               {std::numeric_limits<float>::quiet_NaN(), 0, 0, infinity, 3e38f, -infinity, 1e-42f, -0.0f, 1});
    write("points_not_finite_lose_their_polygons",
          {good.names, chunk("PNTS", lw_tools::points_body(bad)),
           polygons(Bytes().u16(3).u16(0).u16(4).u16(1).u16(1).u16(4).u16(1).u16(2).u16(5).u16(6).u16(1)),
           good.surface});
}

void names_and_surfaces(const std::string& directory)
{
    const Parts good = tetrahedron();
    const auto write = [&](const std::string& name, const std::string& names, const std::string& surface) {
        lw_tools::write_file(directory + "/" + name + ".lwo", form({names, good.points, good.polygons, surface}));
    };
    write("surface_names_without_end_are_none", chunk("SRFS", Bytes().raw("Skin without an end")), good.surface);
    write("surface_name_of_2000_bytes_is_cut", chunk("SRFS", Bytes().text(std::string(2000, 'n'))),
          lw_tools::surface_chunk(plain_surface(std::string(2000, 'n'), {})));
    Bytes many; // one name a hundred times, so that each must be made unique
    for (int i = 0; i < 100; ++i) many.text("Skin");
    write("surface_names_all_alike_are_numbered", chunk("SRFS", many), good.surface);
    write("surface_name_not_listed_goes_without_record", good.names,
          lw_tools::surface_chunk(plain_surface("Nobody's", {.red = 255, .green = 0, .blue = 0})));
    SurfaceWriter past("Skin");
    past.color(1, 2, 3);
    write("sub_chunk_past_its_chunk_fails", good.names,
          chunk("SURF", Bytes().text("Skin").raw(past.body()).id("SHDR").u16(60'000).u16(0)));
    write("sub_chunk_of_wrong_size_fails", good.names,
          chunk("SURF", Bytes().text("Skin").id("VDIF").u16(2).f32(1).id("FLAG").u16(2).u16(4)));
    SurfaceWriter wild("Skin");
    wild.f32("VDIF", std::numeric_limits<float>::quiet_NaN()).f32("VSPC", 1e30f);
    wild.f32("VTRN", -5).u16("GLOS", 65535).f32("SMAN", std::numeric_limits<float>::infinity());
    add_texture(wild, {.size = {0, 0, 0}, .center = {1e30, -1e30, 1e38}});
    write("surface_values_out_of_range_are_limited", good.names, lw_tools::surface_chunk(wild));
    SurfaceWriter layered("Skin");
    for (int i = 0; i < 300; ++i) add_texture(layered, {.image = "layer.iff"});
    write("surface_of_300_layers_is_read", good.names, lw_tools::surface_chunk(layered));
}

} // namespace

void write_hostile_objects(const std::string& directory)
{
    heads_and_sizes(directory);
    points_and_polygons(directory);
    names_and_surfaces(directory);
}

} // namespace samples
