# Sourced by run.sh: Windows programs under Wine, on a display of their own. Needs $work and $windows (a build).
# Everything that is started here is ended by stop_wine.

export WINEPREFIX=$work/prefix WINEDEBUG=-all WINEDLLOVERRIDES="mscoree,mshtml=" LC_ALL=C.UTF-8
wine=/usr/lib/wine/wine64
display_process=

start_wine() {
    mkdir -p "$WINEPREFIX/drive_c/windows/Fonts"
    # The dialogs' font, "Helv", is one of these; with another one texts wouldn't fit as they do on Windows.
    cp /usr/share/wine/fonts/{ms_sans_serif,marlett,tahoma,tahomabd}.ttf /usr/share/wine/fonts/sserife.fon \
        "$WINEPREFIX/drive_c/windows/Fonts/"
    exec {display_pipe}<> <(:)
    Xvfb -displayfd "$display_pipe" -screen 0 1024x768x24 -nolisten tcp >"$work/display.log" 2>&1 &
    display_process=$!
    local number=
    read -r -t 30 -u "$display_pipe" number || { cat "$work/display.log" >&2; return 1; }
    export DISPLAY=:$number
    # Title bars drawn by Wine, since there is no window manager.
    timeout 180 "$wine" reg add 'HKCU\Software\Wine\X11 Driver' /v Managed /d N /f >"$work/wine.log" 2>&1
}

stop_wine() {
    [ -z "${dialog_process:-}" ] || kill "$dialog_process" 2>/dev/null || true
    /usr/lib/wine/wineserver64 -k 2>/dev/null || true # of this prefix alone
    [ -z "$display_process" ] || kill "$display_process" 2>/dev/null || true
}

# windows_path PATH: an absolute path here, as the programs there name it.
windows_path() {
    local path=Z:$1
    printf '%s' "${path//\//\\}"
}

# exe PROGRAM WORD...
exe() {
    timeout 60 "$wine" "$windows/$@"
}

probe() {
    exe tests/dialog_probe.exe "$@" | tr -d '\r'
}

# within SECONDS COMMAND...: tries until it succeeds.
within() {
    local tries=$(($1 * 10))
    shift
    until "$@"; do
        tries=$((tries - 1))
        [ $tries -gt 0 ] || return 1
        sleep 0.1
    done
}

has_window() {
    probe windows | grep -qxF "$1"
}

lacks_window() {
    ! has_window "$1"
}

# control TITLE ID FIELD: 3 and 4 are where its centre stands on the screen, 5 tells of a tick, 6 is its text.
control() {
    probe controls "$1" | awk -F '\t' -v id="$2" -v field="$3" '$1 == id { print $field; exit }'
}

shows() { # TITLE ID TEXT
    [ "$(control "$1" "$2" 6)" = "$3" ]
}

is_ticked() { # TITLE ID 0|1
    [ "$(control "$1" "$2" 5)" = "$3" ]
}

click_at() { # X Y [BUTTON...]
    xdotool mousemove "$1" "$2" sleep 0.05 click "${@:3}" 1
}

click() { # TITLE ID
    local place
    place=$(probe controls "$1" | awk -F '\t' -v id="$2" '$1 == id { print $3, $4; exit }')
    # shellcheck disable=SC2086
    click_at $place
}

# double_click TITLE ID TEXT: an item of a list.
double_click() {
    local place
    place=$(probe item "$1" "$2" "$3")
    # shellcheck disable=SC2086
    click_at $place --repeat 2 --delay 60
}

# type_into TITLE ID TEXT: in place of what stands there.
type_into() {
    click "$1" "$2"
    xdotool key --clearmodifiers End sleep 0.05 key shift+Home sleep 0.05 type --delay 15 "$3"
    within 5 shows "$1" "$2" "$3"
}

# picture NAME TITLE: the window as it stands on the screen.
picture() {
    local left top right bottom
    read -r left top right bottom <<<"$(probe frame "$2")"
    import -window root -crop "$((right - left))x$((bottom - top))+$left+$top" +repage -strip "$work/screens/$1.png"
}
