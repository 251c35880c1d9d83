#!/bin/sh
# validate.sh [FILE|DIRECTORY…]: validate.mjs, or exit status 77 where Node or its packages are missing (npm ci in here).
here=$(dirname "$(readlink -f "$0")")
if ! command -v node >/dev/null || [ ! -d "$here/node_modules" ]; then
    echo "the validator is missing: npm ci in tests/npm"
    exit 77
fi
[ $# = 0 ] || exec node "$here/validate.mjs" "$@"
