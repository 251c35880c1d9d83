#!/usr/bin/env bash
# Installs what is missing, builds, and runs every test: ./check.sh
#   --golden   rewrites the expected traces in tests/golden from what the program does now (read the diff!)
#   --format   only checks that the sources are formatted
set -euo pipefail
cd "$(dirname "$(readlink -f "${BASH_SOURCE[0]}")")"
. cmake/packages.sh

check_format() {
    git ls-files '*.cpp' '*.h' | xargs clang-format-14 --dry-run --Werror || {
        echo "Some sources aren't formatted: clang-format-14 -i FILE" >&2
        exit 1
    }
}

# shellcheck disable=SC2086
need $build_packages $test_packages clang-format-14
if [ "${1:-}" = --format ]; then check_format; exit; fi
command -v npm >/dev/null || need nodejs npm
(cd tests/npm && npm ci --no-audit --no-fund --silent)

check_format
build_preset release -DLW_TESTS=ON -DLW_UNIT_TESTS=OFF
build_preset asan -DLW_TESTS=ON

[ "${1:-}" != --golden ] || export UPDATE_GOLDEN=1
export ASAN_OPTIONS=detect_leaks=1:abort_on_error=0 UBSAN_OPTIONS=print_stacktrace=1
# The whole suite runs sanitized; the program as users have it runs its own tests once more.
jobs=$(nproc)
status=0
ctest --test-dir build/asan -j "$jobs" --output-on-failure --no-tests=error >build/ctest-asan.log 2>&1 || status=1
ctest --test-dir build/release -j "$jobs" --output-on-failure --no-tests=error >build/ctest-release.log 2>&1 || status=1

passed=0 failed=0
for log in build/ctest-asan.log build/ctest-release.log; do
    [ $status = 0 ] || sed -n '/^The following tests FAILED/,$p' "$log"
    total=$(sed -n 's/.* tests failed out of \([0-9]*\)$/\1/p' "$log")
    bad=$(sed -n 's/.*passed, \([0-9]*\) tests failed out of.*/\1/p' "$log")
    passed=$((passed + ${total:-0} - ${bad:-0})) failed=$((failed + ${bad:-0}))
done
[ $status = 0 ] || grep -h -B 2 -A 40 -E '\*\*\*(Failed|Timeout|Exception)' build/ctest-asan.log build/ctest-release.log | head -n 200 || true
echo "$passed passed, $failed failed"
exit $status
