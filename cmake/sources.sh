# Sourced by check.sh: which C++ files there are, and what the formatter and the linter say of them. A source archive,
# without git or its history, is checked like a clone.

# All of them, one a line.
all_sources() {
    find . -type d \( -name build -o -name node_modules -o -name '.?*' \) -prune -o \
        -type f \( -name '*.cpp' -o -name '*.h' \) -print | sed 's|^\./||' | sort
}

# Those that the build in build/PRESET compiles.
compiled_sources() {
    sed -n "s|^ *\"file\": \"$PWD/\(.*\)\",\{0,1\}\$|\1|p" "build/$1/compile_commands.json" | grep -v '^build/' | sort -u
}

# Those that differ from where this branch left its upstream; on the upstream itself, from the commit before. Fails
# where there is no history to tell it.
changed_sources() {
    [ -z "$(git rev-parse --show-prefix 2>&1)" ] || return 1 # no clone, or one of something else round this tree
    local base head
    head=$(git rev-parse HEAD) || return 1
    base=$(git merge-base HEAD '@{upstream}' 2>/dev/null || git merge-base HEAD origin/main 2>/dev/null || echo "$head")
    [ "$base" != "$head" ] || base=$(git rev-parse --quiet --verify HEAD~1) || return 1
    { git diff --name-only --diff-filter=d "$base" && git ls-files --others --exclude-standard; } |
        { grep -E '\.(cpp|h)$' || true; } | sort -u
}

check_format() {
    all_sources | xargs clang-format-14 --dry-run --Werror || {
        echo "Some sources aren't formatted: clang-format-14 -i FILE" >&2
        return 1
    }
}

# lint PRESET: clang-tidy on the files named on standard input; a header is looked at in a file that includes it, its own
# before others. What it finds stands in build/lint.log. The build must be done: some sources are made by it.
lint() {
    local preset=$1 compiled file
    compiled=$(compiled_sources "$preset")
    while read -r file; do
        case $file in
        *.cpp) grep -xF "$file" <<<"$compiled" ;;
        *) { grep -xF "${file%.h}.cpp" <<<"$compiled" || xargs grep -lF "#include \"$file\"" <<<"$compiled"; } | head -n 1 ;;
        esac || true
    done | sort -u >build/lint.files
    # GCC's warnings, which the compile commands name, are partly unknown to clang.
    xargs -a build/lint.files -r -P "$(nproc)" -n 2 \
        clang-tidy-14 --extra-arg=-Wno-unknown-warning-option -p "build/$preset" --quiet >build/lint.log 2>/dev/null || {
        grep -E '(error|warning): ' build/lint.log | sort -u | head -n 50 >&2
        echo "clang-tidy has found something; build/lint.log has the whole of it." >&2
        return 1
    }
    echo "$(wc -l <build/lint.files) files linted"
}
