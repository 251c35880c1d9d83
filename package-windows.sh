#!/usr/bin/env bash
# Installs what is missing, builds for Windows, and packs build/lwimport-windows.zip: ./package-windows.sh
set -euo pipefail
cd "$(dirname "$(readlink -f "${BASH_SOURCE[0]}")")"
. cmake/packages.sh
# shellcheck disable=SC2086
need $windows_packages
need_npm
build_preset windows

folder=build/windows/package/lwimport-windows
rm -rf build/windows/package
mkdir -p "$folder/samples" "$folder/docs/pictures"
cp build/windows/bin/{lwimport.exe,imp_lw.dll,vc4_tv.dll,import_io.dll,lw_platform.dll} "$folder/"
x86_64-w64-mingw32-strip "$folder"/*.exe "$folder"/*.dll
cp -r samples/harbour "$folder/samples/"
# That build reads no Amiga pictures; as PNG, under their own names, they are found.
for picture in "$folder"/samples/harbour/Images/*; do
    ffmpeg -v error -i "$picture" -frames:v 1 -f image2 -c:v png "$picture.png"
    mv "$picture.png" "$picture"
done
cp -r docs/user "$folder/docs/"
cp docs/pictures/windows_*.png "$folder/docs/pictures/"
# Windows' editor of old shows lines only when they end in CR LF.
sed -e 's|(2-options.md)|(docs/user/2-options.md)|' -e 's|(\.\./pictures|(docs/pictures|' -e 's/$/\r/' docs/user/5-windows.md >"$folder/README.txt"
rm -f build/lwimport-windows.zip
(cd build/windows/package && zip -qr -X ../../lwimport-windows.zip lwimport-windows)
echo "build/lwimport-windows.zip"
