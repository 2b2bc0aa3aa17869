#!/bin/sh
# Builds the fuzz targets and runs each for a while: fuzz/run.sh [seconds each] [target...]
# What a target finds on the way stays in build/fuzz/corpus; what makes it crash is put into build/fuzz/crashes.
# Ends with 1 if any target failed.
set -u
cd "$(dirname "$0")/.." || exit 1
seconds=${1:-20}
[ $# -gt 0 ] && shift

cmake --preset fuzz >/dev/null && cmake --build --preset fuzz -j 2 || exit 1
[ $# -gt 0 ] || set -- $(cd fuzz && ls ./*_fuzz.cpp | sed 's|^\./||; s|\.cpp$||')

build=build/fuzz
mkdir -p $build/crashes
failed=0
for target in "$@"; do
    mkdir -p "$build/corpus/$target" "fuzz/corpus/$target"
    log=$build/$target.log
    # The libraries that SDL brings along keep memory to the end of the process: no leak search.
    ASAN_OPTIONS=detect_leaks=0 "$build/fuzz/$target" -max_total_time="$seconds" -rss_limit_mb=3000 -timeout=20 \
        -print_final_stats=1 -artifact_prefix="$build/crashes/$target-" \
        "$build/corpus/$target" "fuzz/corpus/$target" >"$log" 2>&1
    code=$?
    runs=$(sed -n 's/^stat::number_of_executed_units: *//p' "$log")
    if [ $code -eq 0 ]; then
        echo "$target: ${runs:-0} executions, no crash"
    else
        echo "$target: ${runs:-0} executions, FAILED (code $code), see $log"
        failed=1
    fi
done
if [ $failed -eq 0 ]; then echo "Fuzzing: all targets passed"; else echo "Fuzzing: FAILED"; fi
exit $failed
