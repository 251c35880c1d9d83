#!/bin/sh
# bench/run.sh [--benchmark_filter=REGEX]: builds what is measured, runs it, and writes bench/RESULTS.md (with a filter
# it prints only). The inputs, some 250 MB, lie in the directory for temporary files meanwhile.
set -eu
root=$(cd "$(dirname "$0")/.." && pwd)
build=$root/build/bench
[ -f "$build/build.ninja" ] || (cd "$root" && cmake --preset release -B "$build" -DLW_BENCH=ON -DLW_TESTS=OFF >/dev/null)
cmake --build "$build" --target lwimport_bench >/dev/null
if [ $# -gt 0 ]; then exec "$build/bin/lwimport_bench" "$@"; fi
table=$("$build/bin/lwimport_bench")
{
    echo "# Ratios of the last bench/run.sh"
    echo
    echo "Times are the least CPU time of several runs, from the call of the entry point to the built scene; start to exit is"
    echo "the least elapsed time. All in one run, release build; the trace is off."
    echo
    echo "$table"
} >"$root/bench/RESULTS.md"
cat "$root/bench/RESULTS.md"
