# Sourced by run.sh: options files, good and odd, must mean the same to both builds. What they mean shows in the calls
# of a conversion: split, normals with their angle, statistics, keyframes.

# options_file NAME: standard input becomes the options file of a directory of its own.
options_file() {
    mkdir -p "$work/options/$1"
    cat >"$work/options/$1/imp_lw.ini"
}

calls_with() {
    "$native/bin/lwimport" call --plugin-dir "$1/" --trace "$1/native.trace" \
        execute_geometry_converter filename=goblet.lwo >"$1/native.out" 2>"$1/native.err"
    lwimport call --plugin-dir "$(windows_path "$1/")" --trace "$(windows_path "$1/windows.trace")" \
        execute_geometry_converter filename=goblet.lwo >"$1/windows.out" 2>"$1/windows.err"
}

test_options_files() {
    rm -rf "$work/options"
    local long flags='explode_obj_by_surf_names = 0\nprint_statistics = 0\n'
    long=$(printf 'd%.0s' {1..299})
    printf '' | options_file empty
    printf "$flags" | options_file plain
    printf '# a line\r\n[Preferences]\r\nexplode_obj_by_surf_names=0\r\n\r\nsmoothing_angle = 12.5' | options_file pc_without_last_end
    printf 'print_statistics = 0\nsmoothing_angle\nexplode_obj_by_surf_names = 0\n' | options_file key_alone_ends
    printf 'explode_obj_by_surf_names = 65536\nprint_statistics = 65537\ncompute_normals = x\n' | options_file beyond_16_bits
    printf 'newtek_root_directory = ""\nExplode_obj_by_surf_names = 0\nprint_statistics = 0\n' | options_file empty_quotes_and_case
    printf "newtek_root_directory = \"c:\\\\\\\\$long\"\n$flags" | options_file root_of_300
    printf "newtek_root_directory = c:\\\\\\\\a b\\\\\\\\\\344\n$flags" | options_file root_with_blank_and_8_bits
    printf "print_statistics = 0\n\0compute_normals = 0\n$flags" | options_file zero_bytes
    { printf 'print_statistics = 0\n'; head -c 10000000 /dev/zero | tr '\0' x; printf "\n$flags"; } | options_file line_of_10_mb
    mkdir -p "$work/options/directory_of_its_name/imp_lw.ini" "$work/options/missing"

    local directory name kind
    for directory in "$work"/options/*; do
        name=$(basename "$directory")
        cp "$work/samples/objects/goblet_three_surfaces_smooth.lwo" "$directory/goblet.lwo"
        cd "$directory"
        calls_with "$directory"
        for kind in trace out err; do
            check "options file $name: same $kind" cmp "$directory/native.$kind" "$directory/windows.$kind"
        done
    done
    cd "$house"
    check "an options file is obeyed" test "$(grep -c Tv_Object_Define "$work/options/plain/windows.trace")" = 1
    check "an empty one leaves the split on" test "$(grep -c Tv_Object_Define "$work/options/empty/windows.trace")" = 3
    check "a key alone hides what follows" test "$(grep -c Tv_Object_Define "$work/options/key_alone_ends/windows.trace")" = 3
}
