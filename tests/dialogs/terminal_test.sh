#!/usr/bin/env bash
# The dialogs in a real terminal, by keys: terminal_test.sh PROGRAM
# CAPTURES=DIR in the environment keeps the three screens there as text.
set -u
program=$1
command -v tmux >/dev/null || { echo 'SKIPPED: the terminal dialogs are tested with tmux, which is not installed'; exit 77; }
here=$(mktemp -d /tmp/dialogs.XXXXXX) # short: paths are seen on the screen
session=0
trap 'tmux -S "$here/socket" kill-server 2>/dev/null; rm -rf "$here"' EXIT
mkdir -p "$here/home/.config/lwimport" "$here/content/Objects" "$here/content/Scenes"
for i in $(seq -w 1 30); do mkdir "$here/content/Dir$i"; done
ini=$here/home/.config/lwimport/imp_lw.ini
failed=0
on_tmux() { TMUX='' tmux -S "$here/socket" -f /dev/null "$@"; }
complain() { echo "FAILED: $1"; on_tmux capture-pane -t "$session" -p 2>/dev/null; failed=1; }
keys() { on_tmux send-keys -t "$session" "$@"; }

# Waits until the screen has a line like this (at most 20 s: sanitized programs start slowly).
sees() {
    for _ in $(seq 200); do
        on_tmux capture-pane -t "$session" -p -J | grep -qE -- "$1" && return
        sleep 0.1
    done
    complain "never seen: $1"
}
# open COLUMNS LINES WORD...: the program in a new terminal; "status=N" when it has ended.
open() {
    local columns=$1 lines=$2
    shift 2
    on_tmux kill-session -t "$session" 2>/dev/null
    session=$((session + 1))
    on_tmux new-session -d -s "$session" -x "$columns" -y "$lines" \
        "cd '$here'; env HOME='$here/home' XDG_CONFIG_HOME= TERM=xterm LC_ALL=C.UTF-8 ASAN_OPTIONS=detect_leaks=0 '$program' $*; echo status=\$?; exec sleep 60"
    on_tmux set-option -t "$session" status off
}
captured() { [ -z "${CAPTURES:-}" ] || on_tmux capture-pane -t "$session" -p >"$CAPTURES/$1.txt"; }
# A line of the options file.
has() { grep -qxF -- "$1" "$ini" || complain "the options file has no line: $1"; }

# Flip a box, type an angle, OK.
open 80 24 options
sees '\[\*\] Compute vertex smoothing normals'
sees '<OK> .*<About'
captured terminal_options
keys Tab Space
sees '\[ \] Compute vertex smoothing normals'
keys Tab BSpace BSpace BSpace BSpace 45 Enter
sees 'status=0'
sees 'options written to .*imp_lw.ini'
has 'compute_normals = 0'
has 'smoothing_angle = 45'

# The dialog shows what was kept; a wrong angle keeps it open; Cancel leaves the file alone.
cp "$ini" "$here/before"
open 80 24 options
sees '\[ \] Compute vertex.*angle = +45_'
keys Tab Space Tab x Enter
sees 'must be a number from 0 to 180'
keys Enter
sees '\[\*\] Compute vertex.*angle = +45x_'
keys Escape
sees 'status=0'
cmp -s "$ini" "$here/before" || complain 'Cancel wrote the options file'

# The split's warning, wrapped, and a second flip behind it.
open 80 24 options
sees 'Break apart'
keys Tab Tab Tab Tab Space
sees 'occurring\.'
keys Enter
sees '\[ \] Break apart'
keys Space
sees '\[\*\] Break apart'
keys C-c
sees 'status=0'

# The chooser: lists, scrolls, follows, makes.
printf 'newtek_root_directory = "%s"\n' "$here/content" >"$ini"
open 80 24 options
sees '<Browse>'
keys Enter
sees '│ Dir01 '
sees '<Network'
captured terminal_chooser
keys Tab Tab Tab End
sees '│ Scenes '
keys Enter
sees 'content/Scenes_'
keys BTab C-u New Enter
sees 'does not exist\.'
keys Enter
sees 'Scenes.New_.* <Browse>'
[ -d "$here/content/Scenes/New" ] || complain 'the directory was not made'
keys Escape
sees 'status=0'

# About, and a terminal that is too small.
open 80 24 options about
sees '<OK> +<Help>'
captured terminal_about
keys F1
sees 'man lwimport'
keys Enter
sees '<OK> +<Help>'
sleep 0.5
keys Escape # it has no Cancel, and closes all the same
sees 'status=0'
open 79 24 options
sees 'error: dialogs need a terminal of 80 columns and 24 lines, and this one has 79'
sees 'status=1'

# A file that can't be written is told once the screen is gone.
rm -r "$here/home/.config"
touch "$here/home/.config"
open 80 24 options
sees '<OK> .*<About'
keys Tab Enter
sees 'error: .*imp_lw\.ini'
sees 'status=1'

# Smaller and larger while it is open: still there, still whole.
open 100 30 options
sees '<About\.\.\.>'
on_tmux resize-window -t "$session" -x 80 -y 24
sleep 1
sees '<OK> .*<About\.\.\.>'
keys Escape
sees 'status=0'
exit $failed
