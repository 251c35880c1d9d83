#!/usr/bin/env bash
# Every failure in its turn: run.sh [--all] [--program FILE] [CASE...]
# Runs the program again and again, and each time another call fails: each allocation, read, write, open, rename, sync
# (shim.cpp says how). Or the run is killed there. Without --all some hundred calls of each case are picked, evenly.
# What must hold each time: no signal but one that was sent, no more than 20 s, and
#   status 0   the files and standard output are those of an undisturbed run
#   else       the error is told, where memory failed in one line that says so, and the files are those from before;
#              a file that can't be opened may be left out of the new ones, though
#   killed     files from before or the new ones, no mixture; the next run puts all in order
# Prints each try that breaks this, and how many there were. PROGRAM and SHIM name another build than the release one.
set -u
here=$(dirname "$(readlink -f "${BASH_SOURCE[0]}")")
tree=$(readlink -f "$here/../..")
export PROGRAM=${PROGRAM:-$tree/build/release/bin/lwimport} SHIM=${SHIM:-$tree/build/release/tests/faults.so}
export LC_ALL=C.UTF-8 NO_COLOR=1
unset XDG_CONFIG_HOME TV_TRACE

# Name, input below samples/, arguments. "Before" is what the same arguments make of another input.
cases='object objects/goblet_three_surfaces_smooth.lwo IN -o out.glb
textured harbour/Objects/Crate.lwo IN -o out.glb
scene harbour/harbour.lws IN -o out.glb
gltf objects/table_procedurals_beside_image_maps.lwo IN -o out.gltf
json harbour/Scenes/harbour_oldstyle_passes_through.lws IN -o out.json
info harbour/harbour.lws info IN
info_json objects/surface_every_sub_chunk.lwo info --json IN
find harbour/harbour.lws find IN
options harbour/harbour.lws options set print_warnings 1'
other=harbour/Objects/Boat.lwo

# In the current directory, with the arguments of a case and its input.
run() { # ARGUMENTS INPUT
    local word words=()
    for word in $1; do [ "$word" = IN ] && word=$tree/samples/$2; words+=("$word"); done
    HOME=$PWD timeout -k 1 20 "${prefix[@]}" "$PROGRAM" "${words[@]}" >../out 2>../err </dev/null
}

same_tree() { diff -r "$1" "$2" >/dev/null 2>&1; }
holds_tree() { [ -z "$(diff -r "$1" "$2" 2>&1 | grep -v "^Only in $2")" ]; } # all of $1 stands in $2 too

try() { # NAME CALL AT SIGNAL
    local name=$1 call=$2 at=$3 signal=$4 status=0 bad='' line input arguments
    line=$(grep "^$name " <<<"$cases")
    read -r _ input arguments <<<"$line"
    local place=$WORK/try.$name.$call.$at.$signal was=$WORK/$name.before/tree new=$WORK/$name.after/tree
    mkdir -p "$place"
    cp -r "$was" "$place/tree"
    cd "$place/tree" || exit 1
    prefix=(env "LD_PRELOAD=$SHIM" "FAULT_CALL=$call" "FAULT_AT=$at")
    [ "$signal" = 0 ] || prefix+=("FAULT_DO=$signal")
    run "$arguments" "$input" 2>/dev/null || status=$?
    if [ $status = 0 ]; then
        same_tree . "$new" || bad='status 0 with other files'
        cmp -s ../out "$WORK/$name.after/out" || bad='status 0 with another standard output'
    elif [ $status -ge 124 ] && [ $status != $((128 + signal)) ]; then
        bad="ended by $([ $status = 124 ] && echo its time limit || echo signal $((status - 128)))"
    elif [ "$signal" = 9 ]; then
        holds_tree "$was" . || holds_tree "$new" . || bad='a mixture of old and new'
        prefix=()
        run "$arguments" "$input" || bad="$bad the next run fails"
        same_tree . "$new" || bad="$bad the next run leaves rubbish: $(ls -A | tr '\n' ' ')"
    elif [ "$signal" != 0 ]; then
        [ $status = $((128 + signal)) ] || bad="status $status"
        same_tree . "$was" || same_tree . "$new" || bad="$bad a mixture, or rubbish: $(ls -A | tr '\n' ' ')"
    else
        [ "$call" = open ] || same_tree . "$was" || bad="status $status with other files: $(ls -A | tr '\n' ' ')"
        line=$(grep '^error: ' ../err)
        [ -n "$line" ] || bad="status $status without a word"
        [[ $call != @(memory|new) ]] || [[ $line == *memory* && $line != *$'\n'* ]] || bad="not told as memory: $line"
    fi
    cd "$WORK" || exit 1
    [ "$signal" = 0 ] || call="signal $signal at $call"
    [ -z "$bad" ] || echo "$name, $call $at: $bad"
    rm -rf "$place"
}

if [ "${1:-}" = --try ]; then
    shift
    try "$@"
    exit 0
fi

all=0
while :; do
    case ${1:-} in
    --all) all=1 ;;
    --program) PROGRAM=$(readlink -f "$2"); shift ;;
    *) break ;;
    esac
    shift
done
WORK=$(mktemp -d)
export WORK
trap 'rm -rf "$WORK"' EXIT

# CASE CALL TRIES SIGNAL: the tries, one a line; with --all those of every call.
plan() {
    local count step
    prefix=(env "LD_PRELOAD=$SHIM" "FAULT_CALL=$2" "FAULT_COUNT=$WORK/count")
    (cd "$WORK/$1.count/tree" && run "$arguments" "$input")
    count=$(cat "$WORK/count")
    step=1
    [ $all = 1 ] || [ "$count" -le "$3" ] || step=$((count / $3))
    [ "$count" -eq 0 ] || seq "$step" "$step" "$count" | sed "s/.*/$1 $2 & $4/"
}

while read -r name input arguments; do
    [ $# = 0 ] || [[ " $* " == *" $name "* ]] || continue
    prefix=()
    for state in before after count; do mkdir -p "$WORK/$name.$state/tree"; done
    (cd "$WORK/$name.before/tree" && run "$arguments" "$other") || { echo "$name: cannot prepare"; exit 1; }
    cp -r "$WORK/$name.before/." "$WORK/$name.after"
    (cd "$WORK/$name.after/tree" && run "$arguments" "$input") || { echo "$name: cannot run"; exit 1; }
    plan "$name" memory 120 0
    plan "$name" new 60 0
    for call in read write open rename sync; do plan "$name" "$call" 20 0; done
    for call in write open rename sync; do for signal in 9 15; do plan "$name" "$call" 6 "$signal"; done; done
    for signal in 1 2; do plan "$name" write 3 "$signal"; done
    # As it is when memory is gone: nothing can be had any more from there on.
    plan "$name" memory 20 0 | awk '{ $3 = $3 "+"; print }'
done <<<"$cases" >"$WORK/plan"
xargs -P "$(nproc)" -L 1 "${BASH_SOURCE[0]}" --try <"$WORK/plan" >"$WORK/bad"
sort "$WORK/bad"
echo "$(wc -l <"$WORK/plan") tries, $(wc -l <"$WORK/bad") bad"
[ ! -s "$WORK/bad" ]
