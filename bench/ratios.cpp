#include "bench/ratios.h"

#include <algorithm>
#include <cstdio>
#include <vector>

namespace bench {

void Collector::ReportRuns(const std::vector<Run>& runs)
{
    for (const Run& run : runs) {
        if (run.run_type != Run::RT_Iteration) continue;
        const std::string name = run.run_name.function_name;
        const double seconds = run.real_accumulated_time / static_cast<double>(run.iterations);
        const auto [entry, is_new] = least_.try_emplace(name, seconds);
        if (!is_new) entry->second = std::min(entry->second, seconds);
        std::fprintf(stderr, "%-28s %14.6f\n", name.c_str(), seconds);
    }
}

namespace {

struct Ratio {
    const char* what;
    const char *over, *under; // names of times
    double divisor;           // of `over`, besides `under`
    double goal;              // at most this
};

constexpr double mebibyte = 1024 * 1024;
// Of an object of 65,535 points and 1,000,000 triangles: points, indices and sizes, in bytes.
constexpr double flat_arrays = 65535 * 12.0 + 1e6 * 3 * 4 + 1e6 * 4;

const Ratio ratios[] = {
    {"Object of 65,535 points and 1,000,000 polygons: run over one pass that turns floats and widens indices",
     "object_1m", "object_limit", 1, 3},
    {"The same object over one with a tenth of the polygons", "object_1m", "object_100k", 1, 11},
    {"Peak memory of that run over 3 times its flat arrays and 32 MiB", "peak_bytes", "",
     3 * flat_arrays + 32 * mebibyte, 1},
    {"2,000 surfaces, split, over one surface", "object_2000_surfaces", "object_1m", 1, 1.5},
    {"Trace switched off over libraries without a trace (10,000 nulls with 10 keys)", "nulls", "untraced_build", 1,
     1.05},
    {"Scene of 100 MB of ignored keywords over one pass that parts tokens and turns numbers", "text_100mb",
     "text_limit", 1, 2},
    {"Motion of 32,767 keys over one of 3,276", "motion_keys", "motion_keys_tenth", 1, 12},
    {"10,000 nulls with 10 keys over 1,000", "nulls", "nulls_tenth", 1, 12},
    {"One object loaded 10,000 times over 1,000 times", "one_object_loaded", "one_object_loaded_tenth", 1, 12},
    {"300 distinct objects over 30", "distinct_objects", "distinct_objects_tenth", 1, 12},
    {"Chain of 10,000 parents over 1,000", "chain", "chain_tenth", 1, 12},
    {"10,000 children of one parent over 1,000", "one_parent", "one_parent_tenth", 1, 12},
    {"Seconds for a million keyframes, from the motion of 32,767 keys", "motion_keys", "", 32767 * 9 / 1e6, 1},
    {"lwimport on a small object, start to exit, over /bin/true with the same libraries", "start_lwimport",
     "start_true", 1, 3},
    {"lwimport options get, start to exit, over the same", "start_options", "start_true", 1, 3},
    {"Seconds for five million texture coordinates, the four projections in turn", "coordinates_5m", "", 1, 1},
    {"A picture of 4096 x 4096 found, read, decoded and encoded over the PNG encoder alone", "picture_embedded",
     "picture_encoded", 1, 2},
};

void print_row(const char* what, double value, double goal)
{
    std::printf("| %s | %.2f | %.4g | %s |\n", what, value, goal, value <= goal ? "yes" : "**no**");
}

} // namespace

void print_ratios(const Times& times)
{
    std::printf("| Ratio | Measured | At most | Held |\n|---|---:|---:|---|\n");
    for (const Ratio& ratio : ratios) {
        const auto over = times.find(ratio.over), under = times.find(ratio.under);
        if (over == times.end() || (*ratio.under && under == times.end())) continue;
        print_row(ratio.what, over->second / ratio.divisor / (*ratio.under ? under->second : 1), ratio.goal);
    }
    const auto lit = times.find("points_lit"), alone = times.find("points_alone"), camera = times.find("camera_alone");
    if (lit != times.end() && alone != times.end() && camera != times.end()) {
        print_row("1,000 lights and a camera of 32,767 keys in a scene of a million points over the scene without, the "
                  "camera's own time taken off",
                  (lit->second - camera->second) / alone->second, 2);
    }
}

} // namespace bench
