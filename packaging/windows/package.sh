#!/usr/bin/env bash
# Builds Kelvash for Windows and puts what a player needs into one folder and its zip: the programs, the libraries that
# they load, and an empty Kelvash.prf, which keeps the program's files beside it wherever the folder is unpacked.
#   packaging/windows/package.sh [FOLDER]    build/kelvash-windows if none is named
# packaging/windows/build.sh --window has to have run before.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/../.."

folder=${1:-build/kelvash-windows}
KELVASH_WINDOWS_PREFIX=$(packaging/windows/build.sh --where)
export KELVASH_WINDOWS_PREFIX
[[ -f $KELVASH_WINDOWS_PREFIX/stamps/qt6-base ]] || { echo "Qt for Windows isn't there: packaging/windows/build.sh --window" >&2; exit 1; }
cmake --preset windows >/dev/null
cmake --build --preset windows --target kelvash kelvash-cli kelvash_standin_game

rm -rf "$folder"
mkdir -p "$folder/platforms" "$folder/imageformats" "$folder/styles"
build=build/windows
cp "$build"/bin/kelvash{,-cli}.exe "$folder/"
cp "$build/share/kelvash/standin-game.exe" "$folder/" # the game of `kelvash-cli demo`
cp "$KELVASH_WINDOWS_PREFIX"/plugins/platforms/qwindows.dll "$folder/platforms/"
cp "$KELVASH_WINDOWS_PREFIX"/plugins/imageformats/q{gif,ico,jpeg}.dll "$folder/imageformats/"
cp "$KELVASH_WINDOWS_PREFIX"/plugins/styles/*.dll "$folder/styles/"
cp "$KELVASH_WINDOWS_PREFIX/bin/SDL2.dll" "$folder/" # loaded by name while the program runs
: >"$folder/Kelvash.prf"

# Where a library of ours or of the compiler lies; nothing for the system's own.
compiler=$(dirname "$(x86_64-w64-mingw32-g++-posix -print-file-name=libstdc++-6.dll)")
library() {
    local place
    for place in "$KELVASH_WINDOWS_PREFIX/bin" "$compiler" /usr/x86_64-w64-mingw32/lib; do
        [[ ! -f $place/$1 ]] || { echo "$place/$1"; return; }
    done
}
# What a file loads is loaded in its turn.
collect() {
    local name found
    while read -r name; do
        found=$(library "$name")
        [[ -n $found && ! -f $folder/$name ]] || continue
        cp "$found" "$folder/"
        collect "$found"
    done < <(x86_64-w64-mingw32-objdump -p "$1" | sed -n 's/^\tDLL Name: //p')
}
while read -r file; do collect "$file"; done < <(find "$folder" -name '*.exe' -o -name '*.dll')
find "$folder" \( -name '*.exe' -o -name '*.dll' \) -exec x86_64-w64-mingw32-strip {} +

rm -f "$folder.zip"
(cd "$(dirname "$folder")" && zip -qr "$(basename "$folder").zip" "$(basename "$folder")")
du -sh "$folder" "$folder.zip"
