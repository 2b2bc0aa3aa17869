#!/bin/sh
# Builds what is needed and prints the table of ratios: bench/run.sh [folder for the files]
# The folder should lie on a disk that nothing else uses meanwhile; some 700 MB are written there and removed.
set -eu
cd "$(dirname "$0")/.."
build=build/release
work=${1:-$build/bench/work}

cmake --preset release >/dev/null
cmake --build --preset release --target ratios swap_once inflate_files empty peak kelvash-cli >/dev/null
rm -rf "$work"
mkdir -p "$work"
trap 'rm -rf "$work"' EXIT
"$build/bench/ratios" "$work" "$build/bench" "$build/bin/kelvash-cli"
