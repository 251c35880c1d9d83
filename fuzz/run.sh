#!/bin/sh
# fuzz/run.sh TARGET [SECONDS]: fuzzes object, scene, options, export, image or facts from the seeds; finds land in build/fuzz/finds/TARGET/.
# A find that has been understood goes into corpus/TARGET/ under the next number, with its fix.
set -eu
root=$(cd "$(dirname "$0")/.." && pwd)
target=${1:?"usage: fuzz/run.sh object|scene|options|export|image|facts [SECONDS]"}
seconds=${2:-60}
seeds=$target dictionary=$target
case $target in
object) longest=65536 ;;
scene) longest=32768 ;;
options) longest=4096 ;;
export) longest=32768 seeds="object scene" dictionary=object ;;
image) longest=16384 ;;
facts) longest=16384 seeds="facts object scene" ;;
*) echo "fuzz/run.sh: no target $target" >&2; exit 2 ;;
esac
[ -f "$root/build/fuzz/build.ninja" ] || (cd "$root" && cmake --preset fuzz >/dev/null)
cmake --build "$root/build/fuzz" --target "fuzz_$target"
new=$root/build/fuzz/corpus/$target
finds=$root/build/fuzz/finds/$target
mkdir -p "$new" "$finds"
# 512 MiB: an input of 64 KiB has no business with more.
corpora=
for one in $seeds; do corpora="$corpora $root/fuzz/corpus/$one"; done
# shellcheck disable=SC2086
exec "$root/build/fuzz/bin/fuzz_$target" "$new" $corpora -dict="$root/fuzz/$dictionary.dict" \
    -max_len="$longest" -max_total_time="$seconds" -timeout=2 -rss_limit_mb=1024 -malloc_limit_mb=512 \
    -artifact_prefix="$finds/" -print_final_stats=1
