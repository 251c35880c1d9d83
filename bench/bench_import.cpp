// All ratios in one run: lwimport_bench [--benchmark_filter=...] prints the times, then one table of ratios.
// lwimport_bench --inputs DIR leaves the inputs in an existing directory; --peak FILE runs one and prints its peak of memory.
// A time is the least CPU time of several runs, so that a busy machine does little to the ratios. Both sides of a ratio
// run equally often: the least of more runs is less.
#include <algorithm>
#include <benchmark/benchmark.h>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <unistd.h>

#include "bench/bench_export.h"
#include "bench/import_run.h"
#include "bench/inputs.h"
#include "bench/limits.h"
#include "bench/processes.h"
#include "bench/ratios.h"

namespace {

std::string directory; // of the inputs
std::string own_path;  // this program's, for what a process of its own must measure

std::string input(const char* name)
{
    return directory + "/" + name;
}

// A benchmark of `seconds()`, which times itself.
template <class Seconds>
void measured(const char* name, int repetitions, Seconds seconds)
{
    benchmark::RegisterBenchmark(name,
                                 [seconds](benchmark::State& state) {
                                     for (auto _ : state) state.SetIterationTime(seconds());
                                 })
        ->UseManualTime()
        ->Iterations(1)
        ->Repetitions(repetitions)
        ->Unit(benchmark::kMillisecond);
}

void measured_import(const char* name, const char* file, int repetitions = 5)
{
    measured(name, repetitions, [path = input(file)] { return bench::import_seconds(path); });
}

template <class Work>
double timed(Work work)
{
    bench::forget_memory();
    const double start = bench::cpu_seconds();
    benchmark::DoNotOptimize(work());
    return bench::cpu_seconds() - start;
}

void objects()
{
    using namespace bench;
    write_object(input("object_1m.lwo"), {65535, 1'000'000, 1});
    write_object(input("object_100k.lwo"), {65535, 100'000, 1});
    write_object(input("object_2000_surfaces.lwo"), {65535, 1'000'000, 2000});
    measured("object_limit", 15, [path = input("object_1m.lwo")] { return timed([&] { return read_flat(path); }); });
    measured_import("object_1m", "object_1m.lwo", 15);
    measured_import("object_100k", "object_100k.lwo", 15);
    measured_import("object_2000_surfaces", "object_2000_surfaces.lwo", 15);
}

void scenes()
{
    using namespace bench;
    write_ignored_keywords(input("ignored.lws"), 100'000'000);
    measured("text_limit", 3, [path = input("ignored.lws")] { return timed([&] { return read_tokens(path); }); });
    measured_import("text_100mb", "ignored.lws", 3);

    const auto both = [](const char* name, SceneSize small, SceneSize large) {
        const std::string small_name = std::string(name) + "_tenth";
        write_scene(input((small_name + ".lws").c_str()), small);
        write_scene(input((std::string(name) + ".lws").c_str()), large);
        measured_import(small_name.c_str(), (small_name + ".lws").c_str(), 15);
        measured_import(name, (std::string(name) + ".lws").c_str(), 15);
    };
    both("motion_keys", {.nulls = 1, .keys = 3276}, {.nulls = 1, .keys = 32767});
    both("nulls", {.nulls = 1000, .keys = 10}, {.nulls = 10'000, .keys = 10});
    both("one_object_loaded", {.loads = 1000}, {.loads = 10'000});
    both("distinct_objects", {.distinct = 30}, {.distinct = 300});
    both("chain", {.nulls = 1000, .tree = SceneSize::chain}, {.nulls = 10'000, .tree = SceneSize::chain});
    both("one_parent", {.nulls = 1000, .tree = SceneSize::one_parent},
         {.nulls = 10'000, .tree = SceneSize::one_parent});

    write_scene(input("points_alone.lws"), {.big = 16});
    write_scene(input("points_lit.lws"), {.big = 16, .lights = 1000, .camera_keys = 32767});
    write_scene(input("camera_alone.lws"), {.camera_keys = 32767});
    measured_import("points_alone", "points_alone.lws");
    measured_import("points_lit", "points_lit.lws");
    measured_import("camera_alone", "camera_alone.lws");
}

void textures()
{
    bench::write_picture(directory);
    measured("coordinates_5m", 5, bench::texture_coordinates_seconds);
    measured("picture_encoded", 5, bench::encode_picture_seconds);
    measured("picture_embedded", 5, [] { return bench::embed_picture_seconds(directory); });
}

void processes()
{
    const std::string program = own_path.substr(0, own_path.rfind('/')) + "/";
    measured("untraced_build", 15, [command = program + "lwimport_bench_untraced", scene = input("nulls.lws")] {
        return bench::printed_number({command, scene});
    });
    measured("peak_bytes", 1, [scene = input("object_1m.lwo")] {
        return bench::printed_number({own_path, "--peak", scene});
    });
    const std::string lwimport = program + "lwimport", libraries = bench::shared_libraries(lwimport);
    bench::write_object(input("small.lwo"), {400, 100, 2});
    measured("start_lwimport", 40, [=, out = input("small.glb"), in = input("small.lwo")] {
        return bench::process_seconds({lwimport, in, "-o", out, "--quiet"}, "");
    });
    measured("start_options", 40, [=] {
        return bench::process_seconds({lwimport, "options", "get", "smoothing_angle"}, "");
    });
    measured("start_true", 40, [=] { return bench::process_seconds({"/bin/true"}, libraries); });
}

} // namespace

int main(int argc, char** argv)
{
    own_path = std::filesystem::read_symlink("/proc/self/exe").string();
    try {
        if (argc == 3 && std::string_view(argv[1]) == "--peak") {
            bench::import_seconds(argv[2]);
            std::printf("%.0f\n", bench::peak_bytes());
            return 0;
        }
        if (argc == 3 && std::string_view(argv[1]) == "--inputs") { // for a profiler: leaves the inputs in a directory
            directory = argv[2];
            objects();
            scenes();
            return 0;
        }
        directory = std::filesystem::temp_directory_path().string() + "/lwimport_bench_" + std::to_string(getuid());
        std::filesystem::create_directories(directory);
        std::filesystem::current_path(directory); // where the scenes' objects are found
        benchmark::Initialize(&argc, argv);
        if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 2;
        objects();
        scenes();
        textures();
        processes();
        bench::Collector times;
        benchmark::RunSpecifiedBenchmarks(&times);
        bench::print_ratios(times.least());
        std::filesystem::remove_all(directory);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "lwimport_bench: %s\n", error.what());
        return 1;
    }
    return 0;
}
