// For looking at things: draw_glb IN.glb OUT.png [WxH [VIEW [FRAME [SAMPLES [THREADS]]]]]
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <string>

#include "export/picture/picture.h"
#include "tests/picture/glb_tables.h"

int main(int count, char** arguments)
{
    if (count < 3) return 2;
    try {
        const gltf::Tables tables = read_glb(arguments[1]);
        picture::Request request;
        unsigned width = 0, height = 0;
        if (count > 3 && std::sscanf(arguments[3], "%ux%u", &width, &height) == 2)
            request.size = picture::Size{width, height};
        if (count > 3 && std::string(arguments[3]) == "thumb") request = picture::thumbnail(tables, 256);
        if (count > 4) request.view = static_cast<picture::View>(std::atoi(arguments[4]));
        if (count > 5 && *arguments[5]) request.frame = std::atof(arguments[5]);
        if (count > 6) request.samples = static_cast<unsigned>(std::atoi(arguments[6]));
        if (count > 7) request.threads = static_cast<unsigned>(std::atoi(arguments[7]));
        const auto start = std::chrono::steady_clock::now();
        const picture::Outcome outcome = picture::write_still(tables, arguments[2], request);
        const std::chrono::duration<double> took = std::chrono::steady_clock::now() - start;
        std::printf("%ux%u, %zu triangles, lamp %d, %.3f s\n", outcome.size.width, outcome.size.height,
                    outcome.triangles, static_cast<int>(outcome.lamp), took.count());
    } catch (const std::exception& problem) {
        std::fprintf(stderr, "%s\n", problem.what());
        return 1;
    }
    return 0;
}
