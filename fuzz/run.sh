#!/usr/bin/env bash
# Builds the fuzz targets and runs each for a while, as many at once as there are processors:
#   fuzz/run.sh [seconds each] [target...]
# What a target finds on the way stays in build/fuzz/corpus; what makes it crash is put into build/fuzz/crashes.
# Ends with 1 if any target failed.
set -uo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.." || exit 1
export seconds=${1:-20} build=build/fuzz
(($#)) && shift

cmake --preset sanitize >/dev/null && cmake --build --preset sanitize --target fuzzers || exit 1
targets=("$@")
((${#targets[@]})) || mapfile -t targets < <(cd fuzz && basename -s .cpp -- *_fuzz.cpp)

fuzz() { # target
    local target=$1 log=$build/$1.log code=0 runs
    mkdir -p "$build/corpus/$target" "fuzz/corpus/$target"
    # The libraries that SDL brings along keep memory to the end of the process: no leak search.
    ASAN_OPTIONS=detect_leaks=0 "build/sanitize/fuzz/$target" -max_total_time="$seconds" -rss_limit_mb=3000 -timeout=20 \
        -print_final_stats=1 -artifact_prefix="$build/crashes/$target-" \
        "$build/corpus/$target" "fuzz/corpus/$target" >"$log" 2>&1 || code=$?
    runs=$(sed -n 's/^stat::number_of_executed_units: *//p' "$log")
    if ((code == 0)); then
        echo "$target: ${runs:-0} executions, no crash"
    else
        echo "$target: ${runs:-0} executions, FAILED (code $code), see $log"
        return 1
    fi
}
export -f fuzz

mkdir -p "$build/crashes"
if printf '%s\n' "${targets[@]}" | xargs -P "$(nproc)" -I{} bash -c 'fuzz "$1"' fuzz {}; then
    echo "Fuzzing: all targets passed"
else
    echo "Fuzzing: FAILED"
    exit 1
fi
