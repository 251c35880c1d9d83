#!/usr/bin/env bash
# Installs what is missing, builds, lints what has changed, and runs every test: ./check.sh
#   --golden   rewrites the expected traces in tests/golden from what the program does now (read the diff!)
#   --format   only checks that the sources are formatted
#   --lint     only runs clang-tidy, over all sources (minutes)
set -euo pipefail
cd "$(dirname "$(readlink -f "${BASH_SOURCE[0]}")")"
. cmake/packages.sh
. cmake/sources.sh

# shellcheck disable=SC2086
need $build_packages $test_packages
need_npm
mkdir -p build
case ${1:-} in
--format) check_format; exit ;;
--lint)
    build_preset asan -DLW_TESTS=ON
    compiled_sources asan | lint asan
    exit ;;
esac
(cd tests/npm && npm ci --no-audit --no-fund) >build/npm.log 2>&1 || {
    tail -n 20 build/npm.log >&2
    echo "npm can't fetch the glTF validator (npm ci in tests/npm); build/npm.log has the whole of it." >&2
    exit 1
}

check_format
build_preset release -DLW_TESTS=ON -DLW_UNIT_TESTS=OFF
build_preset asan -DLW_TESTS=ON

if changed=$(changed_sources 2>/dev/null); then
    lint asan <<<"$changed"
else
    echo "lint skipped: there is no history here that tells what has changed (./check.sh --lint looks at everything)"
fi

# One test reads numbers where the comma is the decimal sign.
if [ ! -d build/locales/de_DE.UTF-8 ]; then
    mkdir -p build/locales
    localedef -i de_DE -f UTF-8 build/locales/de_DE.UTF-8
fi

[ "${1:-}" != --golden ] || export UPDATE_GOLDEN=1
export ASAN_OPTIONS=detect_leaks=1:abort_on_error=0 UBSAN_OPTIONS=print_stacktrace=1
# The whole suite runs sanitized; the program as users have it runs its own tests once more.
jobs=$(nproc)
status=0
for preset in asan release; do
    ctest --test-dir "build/$preset" -j "$jobs" --output-on-failure --no-tests=error >"build/ctest-$preset.log" 2>&1 || status=1
done

# The Windows build, under Wine: its last line counts its tests. On a busy machine a window may come too late for the
# pointer that waits for it; what fails twice is broken.
tests/windows/run.sh >build/windows-tests.log 2>&1 || tests/windows/run.sh >build/windows-tests.log 2>&1 || status=1
grep -E '^(FAILED|tests/windows skipped)' build/windows-tests.log || true

passed=0 failed=0 skipped=0
read -r windows_passed windows_failed < <(sed -n 's/^\([0-9]*\) passed, \([0-9]*\) failed$/\1 \2/p' build/windows-tests.log) || true
passed=${windows_passed:-0} failed=${windows_failed:-0}
for log in build/ctest-asan.log build/ctest-release.log; do
    [ $status = 0 ] || sed -n '/^The following tests FAILED/,$p' "$log"
    total=$(sed -n 's/.* tests failed out of \([0-9]*\)$/\1/p' "$log")
    bad=$(sed -n 's/.*passed, \([0-9]*\) tests failed out of.*/\1/p' "$log")
    passed_over=$(grep -c '(Skipped)$' "$log" || true)
    passed=$((passed + ${total:-0} - ${bad:-0} - passed_over))
    failed=$((failed + ${bad:-0})) skipped=$((skipped + passed_over))
    sed -n 's/^.*- \(.*\) (Skipped)$/skipped: \1/p' "$log"
done
[ $status = 0 ] || grep -h -A 40 -E '\*\*\*(Failed|Timeout|Exception)' build/ctest-asan.log build/ctest-release.log | head -n 200 || true
echo "$passed passed, $failed failed, $skipped skipped"
exit $status
