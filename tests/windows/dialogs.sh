# Sourced by run.sh: the dialogs, with a real pointer and a real keyboard on a real, if unseen, screen.

options="Lightwave Geometry Import Plug-In"
about="About the Lightwave Geometry Import Plug-In"
chooser="Choose Directory"
missing="Directory Does Not Exist"
settings=$work/settings
content=$WINEPREFIX/drive_c/content

write_settings() { # ROOT
    mkdir -p "$settings"
    cat >"$settings/imp_lw.ini" <<END
# Default options for the Lightwave geometry import converter.
# !! Do not modify this file. It is written by the converter.
[Preferences]
compute_normals = 0
make_surface_names_unique = 1
import_keyframe0_only = 1
print_statistics = 0
print_warnings = 1
smoothing_angle = 45.5
output_debug_info = 0
explode_obj_by_surf_names = 1
newtek_root_directory = "$1"
END
    cp "$settings/imp_lw.ini" "$settings/before.ini"
}

setting() {
    sed -n "s/^$1 = //p" "$settings/imp_lw.ini" | tr -d '\r'
}

unchanged() {
    cmp -s "$settings/imp_lw.ini" "$settings/before.ini"
}

open_dialog() { # TITLE WORD...
    local title=$1
    shift
    (cd "$work" && exec "$wine" "$windows/bin/lwimport.exe" call --plugin-dir "$(windows_path "$settings")\\" "$@") \
        >"$work/dialog.out" 2>"$work/dialog.err" &
    dialog_process=$!
    within 20 has_window "$title"
}

ended_with() { # what the program prints once its dialogs are closed
    within 20 dialog_is_gone && [ "$(tr -d '\r' <"$work/dialog.out")" = "$1" ]
}

dialog_is_gone() {
    ! kill -0 "$dialog_process" 2>/dev/null
}

stands_in_the_middle() { # TITLE
    local left top right bottom
    read -r left top right bottom <<<"$(probe frame "$1")"
    local x=$(((left + right) / 2 - 512)) y=$(((top + bottom) / 2 - 384))
    [ "${x#-}" -le 2 ] && [ "${y#-}" -le 2 ]
}

# Each box follows its click, there and back.
test_options() {
    write_settings 'c:\content\'
    check "the Options dialog opens" open_dialog "$options" show_options_dialog show_options_dialog || return 0
    check "it opens in the middle" stands_in_the_middle "$options"
    check "it shows the content directory" shows "$options" 108 'c:\content\'
    check "it shows the angle" shows "$options" 103 45.5
    local box ticked
    for box in 100:0 110:1 106:1 107:1 101:0 105:0 102:1; do
        check "box ${box%:*} shows its option" is_ticked "$options" "${box%:*}" "${box#*:}"
    done
    for box in 100:0 110:1 107:1 101:0 105:0 102:1; do
        ticked=${box#*:}
        click "$options" "${box%:*}"
        check "box ${box%:*} flips" within 5 is_ticked "$options" "${box%:*}" $((1 - ticked))
        click "$options" "${box%:*}"
        check "box ${box%:*} flips back" within 5 is_ticked "$options" "${box%:*}" "$ticked"
    done

    picture options "$options"

    click "$options" 106
    check "switching the split off warns" within 5 has_window Warning
    check "the warning tells of texture maps" warning_tells_of_textures
    picture warning Warning
    xdotool key Return
    check "the warning closes" within 5 lacks_window Warning
    check "the split is off" is_ticked "$options" 106 0
    click "$options" 106
    check "the split is on again" within 5 is_ticked "$options" 106 1
    check "switching it on says nothing" lacks_window Warning

    click "$options" 200
    check "Help says where help is" within 5 has_window Help
    xdotool key Return
    within 5 lacks_window Help
    click "$options" 201
    check "About opens over the dialog" within 5 has_window "$about"
    picture about "$about"
    click "$about" 1
    check "About closes" within 5 lacks_window "$about"

    # Cancel: what was clicked stays in force, the angle doesn't, the file keeps the old values.
    click "$options" 105
    within 5 is_ticked "$options" 105 1
    type_into "$options" 103 77
    click "$options" 2
    check "the dialog opens again behind Cancel" within 10 is_ticked "$options" 105 1
    check "Cancel forgets the angle" within 5 shows "$options" 103 45.5
    check "Cancel leaves the file alone" unchanged

    type_into "$options" 103 190
    click "$options" 1
    check "OK refuses an angle beyond 180" within 5 has_window "Smoothing Angle"
    xdotool key Return
    within 5 lacks_window "Smoothing Angle"
    check "the dialog stays open then" has_window "$options"
    check "nothing is written then" unchanged
    type_into "$options" 103 60.25
    click "$options" 1
    check "OK closes with 1" ended_with result=1
    check "OK writes the angle" test "$(setting smoothing_angle)" = 60.25
    check "OK writes the flags" test "$(setting output_debug_info)$(setting import_keyframe0_only)" = 11
    check "OK writes all twelve lines" test "$(wc -l <"$settings/imp_lw.ini")" = 12
}

warning_tells_of_textures() {
    probe controls Warning | grep -qF 'imported Lightwace model(s).'
}

test_about() {
    check "About opens by its command" open_dialog "$about" show_about_dialog || return 0
    check "About tells the version" about_tells_version
    xdotool key Return
    check "About's command gives 0" ended_with result=0
}

about_tells_version() {
    probe controls "$about" | cut -f 6 | grep -qx 'Version 3.0'
}

open_chooser() {
    click "$options" 109
    within 10 has_window "$chooser"
}

answer() { # TITLE KEY
    within 5 has_window "$1" && xdotool key "$2" && within 5 lacks_window "$1"
}

test_chooser() {
    rm -rf "$content"
    mkdir -p "$content/Objects/Ships" "$content/Scenes"
    write_settings 'c:\content\'
    open_dialog "$options" show_options_dialog
    check "Browse opens the chooser" open_chooser || return 0
    check "the chooser stands in the middle" stands_in_the_middle "$chooser"
    check "it starts in the content directory" shows "$chooser" 1088 'c:\content'
    # The system's dialog writes directories in small letters.
    double_click "$chooser" 1121 '[Objects]'
    check "a directory opens by a double click" within 5 shows "$chooser" 1088 'c:\content\objects'
    picture chooser "$chooser"
    click "$chooser" 2
    check "Cancel closes the chooser" within 5 lacks_window "$chooser"
    check "the dialog shows the old directory behind Cancel" shows "$options" 108 'c:\content\'

    check "the chooser opens again" open_chooser
    check "it starts where the last click led" shows "$chooser" 1088 'c:\content\objects'
    type_into "$chooser" 1088 'c:\content\new'
    click "$chooser" 1
    check "a directory that isn't there is asked about" within 5 has_window "$missing"
    check "No leaves the chooser open" answer "$missing" Escape
    check "No makes nothing" test ! -e "$content/new"
    click "$chooser" 1
    check "Yes makes it and closes" answer "$missing" Return
    check "the chooser has closed" within 5 lacks_window "$chooser"
    check "the directory is made" test -d "$content/new"
    check "the dialog shows it" within 5 shows "$options" 108 'c:\content\new'

    check "the chooser opens a third time" open_chooser
    type_into "$chooser" 1088 'deeper'
    click "$chooser" 1
    check "a relative one is made below the old one" answer "$missing" Return
    check "it is shown whole" within 5 shows "$options" 108 'c:\content\new\deeper'
    check "it is made there" test -d "$content/new/deeper"

    check "the chooser opens a fourth time" open_chooser
    type_into "$chooser" 1088 '..\x'
    click "$chooser" 1
    check "dots stand for the current directory" within 5 shows "$options" 108 'c:\content\new\deeper\'
    click "$options" 1
    check "OK closes behind the chooser" ended_with result=1
    check "the choice is kept" test "$(setting newtek_root_directory)" = '"c:\content\new\deeper\"'
    check "no dummy file is left" test -z "$(find "$WINEPREFIX/drive_c" "$work/settings" -name 'dummy*')"
}
