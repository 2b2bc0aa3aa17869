#!/bin/sh
# Makes the pictures of the user guide anew, on a sandbox: docs/pictures/make.sh [folder [scale]]
set -eu
cd "$(dirname "$0")/../.."
build=build/release
out=${1:-docs/pictures}
cmake --preset release >/dev/null
cmake --build --preset release --target take_pictures kelvash-cli >/dev/null
sandbox=$(mktemp -d)
trap 'rm -rf "$sandbox"' EXIT
"$build/bin/kelvash-cli" demo "$sandbox/demo" >/dev/null
mkdir -p "$out"
QT_SCALE_FACTOR=${2:-1} DBUS_SESSION_BUS_ADDRESS=disabled: xvfb-run -a -s "-screen 0 1920x1400x24" \
    "$build/docs/pictures/take_pictures" "$sandbox/demo/drive_c/Kelvash" "$out" 2>/dev/null
