# Sourced by lwimport.sh and check.sh: Debian packages by purpose, and the function that installs the missing ones.

build_packages="build-essential cmake ninja-build ccache pkg-config libcli11-dev nlohmann-json3-dev libglm-dev
    libglu1-mesa-dev libpng-dev zlib1g-dev libavcodec-dev libavformat-dev libavutil-dev libswscale-dev libnewt-dev
    libembree-dev libjpeg62-turbo-dev"
windows_packages="cmake ninja-build ccache g++-mingw-w64-x86-64-posix libz-mingw-w64-dev libcli11-dev
    nlohmann-json3-dev libglm-dev libstb-dev zip ffmpeg"
test_packages="libgtest-dev libgmock-dev locales clang-format-14 clang-tidy-14 tmux"

# need PACKAGE...: installs those that are missing. What apt says goes to build/packages.log.
need() {
    local missing=() package
    for package in "$@"; do
        dpkg-query -W -f '${Status}' "$package" 2>/dev/null | grep -q 'ok installed' || missing+=("$package")
    done
    [ ${#missing[@]} -gt 0 ] || return 0
    local as_root=()
    if [ "$(id -u)" != 0 ]; then
        command -v sudo >/dev/null || { echo "Please install these Debian packages, then run this again: ${missing[*]}" >&2; exit 1; }
        as_root=(sudo)
    fi
    mkdir -p build
    echo "Installing ${#missing[@]} Debian packages: ${missing[*]}" >&2
    if ! { "${as_root[@]}" apt-get update && "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
            apt-get install -y --no-install-recommends "${missing[@]}"; } >build/packages.log 2>&1; then
        tail -n 20 build/packages.log >&2
        echo "Installing packages failed; build/packages.log has the whole of it." >&2
        exit 1
    fi
}

# Node and npm, which bundle the viewer of .html pages: Debian's, unless others are there.
need_npm() {
    command -v npm >/dev/null || need nodejs npm
}

# build_preset PRESET [cmake option...]: configures once, then builds what has changed; quiet unless it fails. What
# ccache keeps is good for other clones too.
build_preset() {
    local preset=$1 log=build/$1.log
    local -x CCACHE_BASEDIR=$PWD CCACHE_NOHASHDIR=1
    shift
    mkdir -p build
    if [ ! -f "build/$preset/build.ninja" ] || [ $# -gt 0 ]; then
        [ -f "build/$preset/build.ninja" ] || echo "Building lwimport ($preset) for the first time; this takes a few minutes." >&2
        cmake --preset "$preset" "$@" >"$log" 2>&1 || { tail -n 40 "$log" >&2; exit 1; }
    fi
    cmake --build --preset "$preset" >>"$log" 2>&1 || { tail -n 60 "$log" >&2; exit 1; }
}
