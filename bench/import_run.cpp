#include "bench/import_run.h"

#include <ctime>
#include <malloc.h>
#include <stdexcept>
#include <string_view>

#include "lib/import/implugin.h"
#include "lib/platform/files.h"
#include "lib/services/host.h"
#include "lib/toolkit/scene/scene.h"

namespace bench {

double cpu_seconds()
{
    timespec now{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

void forget_memory()
{
    malloc_trim(0);
}

double import_seconds(const std::string& path)
{
    static char convert[] = "execute_geometry_converter", filename[] = "filename", statistics[] = "print_statistics";
    std::string file = path;
    char* names[] = {convert, filename, statistics, nullptr};
    void* values[] = {nullptr, file.data(), nullptr, nullptr};
    int32_t result = -1;
    platform::forget_directories();
    std::string first_report; // an input that isn't read whole would make a ratio of nothing
    services::Host host;
    host.report = [&](int32_t, std::string_view text) {
        if (first_report.empty()) first_report = text;
    };
    services::set_host(std::move(host));
    forget_memory();
    const double start = cpu_seconds();
    Tavrin_Plugin_EntryPoint(names, values, &result, nullptr);
    const double seconds = cpu_seconds() - start;
    services::set_host({});
    if (result != 0 || !first_report.empty())
        throw std::runtime_error("the run on " + path + " failed: " + first_report);
    tv::clear_scene();
    services::clear();
    return seconds;
}

} // namespace bench
