# Completion for lwimport in bash: source this file, or put it into /usr/share/bash-completion/completions/lwimport

# The plug-in's options, as the program itself lists them: _lwimport_keys PROGRAM SUFFIX
_lwimport_keys() {
    local key rest
    "$1" options list 2>/dev/null | while read -r key rest; do echo "$key$2"; done
}

_lwimport() {
    local word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD - 1]} command=${COMP_WORDS[1]-}
    local where="--as-is --no-restore --range --content-dir --search-path --inside-only --trace --quiet --no-progress --help"
    local convert="--output --format --recursive --no-clobber --strict --keep-partial --scale --light-scale --max-texture
        --backdrop-dome --frame --no-normals --smoothing-angle --no-split --first-key-only --keep-names --warnings --stats
        --debug-info $where"
    local words=$convert
    case $before in
    --content-dir | --search-path | --plugin-dir)
        mapfile -t COMPREPLY < <(compgen -d -- "$word")
        return
        ;;
    --range)
        mapfile -t COMPREPLY < <(compgen -W "keys" -- "$word")
        return
        ;;
    --no-restore)
        mapfile -t COMPREPLY < <(compgen -W "light-parents light-motions targets camera-angles linear-keys fine-rotations
            light-envelopes dark-lights zoom ambient dissolves unseen double-sided light-range area-lights morphs
            depth-range time-line whole-names" -- "$word")
        return
        ;;
    --format)
        mapfile -t COMPREPLY < <(compgen -W "glb gltf json" -- "$word")
        return
        ;;
    --scale | --light-scale | --max-texture | --frame | --smoothing-angle) return ;;
    esac
    case $command in
    info | find) words="--json $where" ;;
    check) words="--help" ;;
    call)
        words="--plugin-dir --trace --help initialize= validate_header= show_options_dialog show_about_dialog
            execute_geometry_converter filename= validate_header_2= $(_lwimport_keys "$1" =)"
        ;;
    options)
        words="about list get set reset path --help"
        [[ $before == get || $before == set ]] && words=$(_lwimport_keys "$1" "")
        ;;
    *) ((COMP_CWORD > 1)) || words="convert info find check call options --help --version $convert" ;;
    esac
    if [[ $word == -* || $command == options || $command == call ]]; then
        mapfile -t COMPREPLY < <(compgen -W "$words" -- "$word")
    else
        mapfile -t COMPREPLY < <(compgen -f -- "$word")
        ((COMP_CWORD > 1)) || mapfile -t -O "${#COMPREPLY[@]}" COMPREPLY < <(compgen -W "$words" -- "$word")
    fi
}
complete -o filenames -F _lwimport lwimport
