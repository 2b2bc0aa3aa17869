#!/bin/sh
# Builds what is needed and prints the table of ratios: bench/run.sh [folder for the files]
# The folder should lie on a disk that nothing else uses meanwhile; some 700 MB are written there and removed.
set -eu
cd "$(dirname "$0")/.."
build=build/release
work=${1:-$build/bench/work}

cmake --preset release >/dev/null
cmake --build --preset release --target \
    ratios intake_ratios gaps watch_tick swap_once inflate_files empty peak kelvash-cli empty_window window_bench kelvash >/dev/null
rm -rf "$work"
mkdir -p "$work"
work=$(cd "$work" && pwd) # some commands run in a folder of it
trap 'rm -rf "$work"' EXIT
"$build/bench/ratios" "$work" "$build/bench" "$build/bin/kelvash-cli"
mkdir "$work/intake"
"$build/bench/intake_ratios" "$work/intake"
mkdir "$work/gaps"
"$build/bench/gaps" "$work/gaps"
mkdir "$work/watch"
xvfb-run -a "$build/bench/watch_tick" "$work/watch"
echo
# Without a session bus of its own a window program may wait for one to be started.
"$build/bin/kelvash-cli" demo "$work/demo" >/dev/null
DBUS_SESSION_BUS_ADDRESS=disabled: xvfb-run -a -s "-screen 0 1280x1024x24" \
    "$build/bench/window_bench" "$build/bin/kelvash" "$build/bench/empty_window" "$work/demo/drive_c/Kelvash" 2>/dev/null
