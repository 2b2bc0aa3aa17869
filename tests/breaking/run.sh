#!/usr/bin/env bash
# The long form of the breaking suite: builds what it needs and prints every test's figures at the end.
#   tests/breaking/run.sh [FILTER]   a filter of GoogleTest, as in 'Pairs.*'
# KELVASH_BREAKING_ROUNDS says how many times the work of ./test is done; 20 are 20 runs of each pair of commands
# and 3,000 random operations.
set -uo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/../.." || exit 1
export KELVASH_BREAKING_ROUNDS=${KELVASH_BREAKING_ROUNDS:-20}

mkdir -p build
{ cmake --preset release && cmake --build --preset release --target breaking_tests kelvash-cli kelvash_standin_game; } \
    >build/breaking-build.log 2>&1 || { tail -n 40 build/breaking-build.log; exit 1; }

log=build/breaking.log
start=$SECONDS
build/release/tests/breaking_tests --gtest_filter="${1:-*}" 2>&1 | tee "$log" | grep -E '^\[ +(RUN|OK|FAILED|SKIPPED) +\]'
status=${PIPESTATUS[0]}
echo
grep '^figures: ' "$log"
# All of them together.
sed -n 's/^figures: [^ ]*: //p' "$log" | tr ',' '\n' | awk '
    { count = $1; $1 = ""; sub(/^ +/, ""); sum[$0] += count }
    END { for (what in sum) printf "  %8d %s\n", sum[what], what }' | sort -k 2
skipped=$(grep -c '^\[  SKIPPED \] .*ms)$' "$log")
((skipped == 0)) || { echo "$skipped tests were skipped:"; grep -A 1 'Skipped$' "$log"; }
echo "The breaking suite ended with $status after $((SECONDS - start)) s; all that it told is in $log"
exit "$status"
