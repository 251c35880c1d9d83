// lwimport_bench_untraced FILE: the seconds of one run with libraries that were built without the call trace.
#include <cstdio>
#include <exception>

#include "bench/import_run.h"

int main(int argc, char** argv)
{
    try {
        if (argc != 2) return 2;
        std::printf("%.9f\n", bench::import_seconds(argv[1]));
    } catch (const std::exception& error) {
        std::fprintf(stderr, "lwimport_bench_untraced: %s\n", error.what());
        return 1;
    }
    return 0;
}
