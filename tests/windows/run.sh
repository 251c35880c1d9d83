#!/usr/bin/env bash
# The Windows build, tested under Wine: exports, traces against the native build, files, images and the dialogs.
#   --pictures   also renews the pictures of the dialogs in docs/pictures
# WINDOWS_BUILD and NATIVE_BUILD name builds to test instead of build/windows and build/release.
set -uo pipefail
house=$(cd "$(dirname "$(readlink -f "${BASH_SOURCE[0]}")")/../.." && pwd)
cd "$house"
. cmake/packages.sh

# Installing may be forbidden here; that is no fault of the build.
if ! (need wine64 fonts-wine xvfb xdotool x11-utils imagemagick) >/dev/null 2>&1; then
    echo "tests/windows skipped: Wine can't be installed here"
    exit 0
fi
if [ -z "${WINDOWS_BUILD:-}" ]; then
    # shellcheck disable=SC2086
    need $windows_packages
    build_preset windows
fi
if [ -z "${NATIVE_BUILD:-}" ]; then
    # shellcheck disable=SC2086
    need $build_packages
    build_preset release
fi
windows=${WINDOWS_BUILD:-$house/build/windows}
native=${NATIVE_BUILD:-$house/build/release}
work=$windows/wine
passed=0 failed=0

# check WHAT COMMAND...
check() {
    local what=$1
    shift
    if "$@" >"$work/check.log" 2>&1; then
        passed=$((passed + 1))
    else
        failed=$((failed + 1))
        echo "FAILED: $what"
        head -n 5 "$work/check.log"
        [ -z "${DISPLAY:-}" ] || import -window root "$work/screens/failed_$failed.png" 2>/dev/null
        return 1
    fi
}

rm -rf "$work"/{screens,samples,settings,scenes-native,scenes-windows,images,native,windows,files}
mkdir -p "$work/screens"
cp -r samples "$work/samples"
. tests/windows/wine.sh
. tests/windows/conversions.sh
. tests/windows/options_files.sh
. tests/windows/dialogs.sh
trap stop_wine EXIT
test_exports
start_wine || { echo "FAILED: Wine doesn't start"; exit 1; }
for group in traces scenes images files settings options_files options about chooser; do "test_$group"; done

if [ "${1:-}" = --pictures ]; then
    for name in options about chooser; do cp "$work/screens/$name.png" "docs/pictures/windows_$name.png"; done
fi
echo "$passed passed, $failed failed"
[ $failed = 0 ]
