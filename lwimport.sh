#!/usr/bin/env bash
# Installs what is missing, builds once, and runs lwimport with the words given: ./lwimport.sh scene.lws
set -euo pipefail
called_from=$PWD
cd "$(dirname "$(readlink -f "${BASH_SOURCE[0]}")")"
house=$PWD
. cmake/packages.sh
# shellcheck disable=SC2086
need $build_packages
need_npm
build_preset release
cd "$called_from"
exec "$house/build/release/bin/lwimport" "$@"
