#!/usr/bin/env bash
# Converts every sample and has the Khronos validator look at each file that comes out: samples_are_valid.sh LWIMPORT HOUSE
# The hostile ones may be refused; all the others must convert.
set -uo pipefail
lwimport=$1 house=$2
"$house/tests/npm/validate.sh" || exit
out=$(mktemp -d)
trap 'rm -rf "$out"' EXIT
cp -r "$house/samples" "$out/samples"
mkdir "$out/good" "$out/hostile"
"$lwimport" -r "$out"/samples/{objects,projections,harbour} -o "$out/good/" --backdrop-dome --quiet >"$out/log" 2>&1 || {
    echo "a good sample doesn't convert:"
    cat "$out/log"
    exit 1
}
"$lwimport" -r "$out/samples/hostile" -o "$out/hostile/" --keep-partial --quiet >/dev/null 2>&1
[ $? -le 1 ] || { echo "the hostile samples end the program"; exit 1; }
[ "$(find "$out/hostile" -name '*.glb' | wc -l)" -ge 10 ] || { echo "too few of the hostile samples convert"; exit 1; }
find "$out/good" "$out/hostile" -name "*.glb" -print0 | xargs -0 "$house/tests/npm/validate.sh"
