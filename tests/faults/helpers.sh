# shellcheck shell=bash disable=SC2154,SC2034
# What the cases beside this file call; sourced by tests/cli/run_case.sh.
tree=$(readlink -f "$(dirname "$cases")/../..")
samples=$tree/samples

failing() { # CALL AT PATH-PART lwimport ARGUMENTS...: with calls that fail; see shim.cpp
    FAULT_CALL=$1 FAULT_AT=$2 FAULT_PATH=$3 LD_PRELOAD=$(dirname "$program")/../tests/faults.so "$program" "${@:5}"
}
stopped() { # SIGNAL CALL AT lwimport ARGUMENTS...: the signal comes in front of a call
    FAULT_DO=$1 failing "$2" "$3" '' "${@:4}"
}
count() { # CALL PATH-PART lwimport ARGUMENTS...: how many calls there were, on standard output behind what there is
    FAULT_COUNT=$here/count failing "$1" 0 "$2" "${@:3}"
    echo "$(cat "$here/count") calls"
}
head_of_scene() { printf 'LWSC\n1\n\nFirstFrame 1\nLastFrame 30\nFrameStep 1\n\n'; }
motion() { printf 'ObjectMotion (unnamed)\n  9\n  1\n  0 0 0 0 0 0 1 1 1\n  0 0 0 0 0\nEndBehavior 1\n\n'; }
scene() { # OBJECT...
    head_of_scene
    local object
    for object; do printf 'LoadObject %s\n' "$object"; motion; done
}
moving() { # KEYS: a null object with so many keys
    head_of_scene
    printf 'AddNullObject Mover\nObjectMotion (unnamed)\n  9\n  %d\n' "$1"
    seq 0 $(($1 - 1)) | sed 's/.*/  & 0 0 0 0 0 1 1 1\n  & 0 0 0 0/'
    printf 'EndBehavior 1\n'
}
picture_sum() { # FILE.gltf: what its first picture holds
    (cd "$(dirname "$1")" && cksum <"$(grep -o '"uri":"[^"]*\.\(png\|jpg\)"' "$(basename "$1")" | head -n 1 | cut -d '"' -f 4)")
}
