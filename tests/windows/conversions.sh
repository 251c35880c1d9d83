# Sourced by run.sh: what the Windows build makes of files must be what the native build makes of them, byte by byte.

lwimport() {
    exe bin/lwimport.exe "$@"
}

test_exports() {
    local names
    names=$(x86_64-w64-mingw32-objdump -p "$windows/bin/imp_lw.dll" |
        sed -n '/^\[Ordinal\/Name Pointer\] Table/,/^$/s/.*\] *//p' | tail -n +2)
    check "the plug-in exports one function" test "$names" = Tavrin_Plugin_EntryPoint
    # Whatever else it needed would be missing on most machines.
    local foreign
    foreign=$(x86_64-w64-mingw32-objdump -p "$windows"/bin/*.exe "$windows"/bin/*.dll | sed -n 's/.*DLL Name: //p' |
        sort -u | grep -vixE '(kernel32|user32|msvcrt|comdlg32|glu32|vc4_tv|import_io|lw_platform)\.dll' || true)
    check "nothing is needed beside Windows ${foreign:+($foreign)}" test -z "$foreign"
}

# Every call that the plug-in makes, what is printed and what is reported.
test_traces() {
    local file name kind
    while read -r file; do
        cd "$(dirname "$file")"
        name=$(basename "$file")
        "$native/bin/lwimport" call --trace "$work/native.trace" execute_geometry_converter filename="$name" \
            >"$work/native.out" 2>"$work/native.err"
        lwimport call --trace "$(windows_path "$work/windows.trace")" execute_geometry_converter filename="$name" \
            >"$work/windows.out" 2>"$work/windows.err"
        for kind in trace out err; do
            check "$name: same $kind" cmp "$work/native.$kind" "$work/windows.$kind"
        done
    done < <(find "$work/samples" -name '*.lw[os]' | sort)
    cd "$house"
}

# All samples in one go, with search and messages: the scenes, as the program holds them.
test_scenes() {
    cd "$work/samples"
    "$native/bin/lwimport" -r . -o "$work/scenes-native/" --format json >/dev/null 2>&1
    lwimport -r . -o "$(windows_path "$work/scenes-windows/")" --format json >/dev/null 2>&1
    check "there are scenes" test -s "$work/scenes-windows/harbour/harbour.json"
    check "the scenes of all samples are the same" diff -rq "$work/scenes-native" "$work/scenes-windows"
    cd "$house"
}

# A picture that stays as it is, one that is decoded, and procedural textures that are baked.
test_images() {
    mkdir -p "$work/images/Images" "$work/native" "$work/windows"
    cd "$work/images"
    cp "$work/samples/projections/sheet_planar_x_card_upright.lwo" sheet.lwo
    cp "$work/samples/objects/table_procedurals_beside_image_maps.lwo" table.lwo
    convert -size 16x16 gradient:red-blue png:Images/TestCard.iff
    convert -size 16x16 gradient:red-blue bmp3:Images/Veins.iff
    local object name
    for object in sheet table; do
        "$native/bin/lwimport" $object.lwo -o "$work/native/$object.gltf" 2>/dev/null
        lwimport $object.lwo -o "$(windows_path "$work/windows/$object.gltf")" 2>/dev/null
        check "$object: same glTF" cmp "$work/native/$object.gltf" "$work/windows/$object.gltf"
        check "$object: same data" cmp "$work/native/$object.bin" "$work/windows/$object.bin"
    done
    for name in "$work"/native/*.png; do
        name=$(basename "$name")
        check "$name: same pixels" test "$(compare -metric AE "$work/native/$name" "$work/windows/$name" null: 2>&1)" = 0
    done
    cp "$work/samples/projections/Images/TestCard.iff" Images/
    lwimport sheet.lwo -o sheet.glb 2>"$work/windows.err"
    check "an Amiga picture is told" grep -qF "can't be read in this build for Windows" "$work/windows.err"
    check "and the rest is converted" test -s sheet.glb
    cd "$house"
}

# Names beyond ASCII, on the command line and on disk; devices that look like files; files out of bounds.
test_files() {
    mkdir -p "$work/files/inside"
    cd "$work/files"
    cp "$work/samples/objects/goblet_three_surfaces_smooth.lwo" 'Kübel.lwo'
    lwimport 'Kübel.lwo' -o 'Größe.glb' 2>"$work/windows.err"
    check "names beyond ASCII work" test -s 'Größe.glb'
    check "and are shown as UTF-8" grep -qF 'Kübel.lwo -> Größe.glb' "$work/windows.err"

    printf 'LWSC\n1\n\nLoadObject con\nShowObject 8 7\nLoadObject ..\\K\374bel.lwo\nShowObject 8 7\n' >inside/scene.lws
    lwimport convert inside/scene.lws -o 'out.glb' 2>"$work/windows.err"
    check "a device is no file, and a Latin-1 name is found" grep -qF '1 of 2 objects missing' "$work/windows.err"
    lwimport convert --inside-only inside/scene.lws -o 'out.glb' 2>"$work/windows.err"
    check "nothing outside is read with --inside-only" grep -qF '2 of 2 objects missing' "$work/windows.err"
    cd "$house"
}

# Options are kept where Windows programs keep them.
test_settings() {
    lwimport options set smoothing_angle 33 >/dev/null 2>&1
    check "options are kept below APPDATA" \
        grep -rqs 'smoothing_angle = 33' "$WINEPREFIX/drive_c/users" --include=imp_lw.ini
    check "options are read back" test "$(lwimport options get smoothing_angle | tr -d '\r')" = 33
}
