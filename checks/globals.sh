#!/usr/bin/env bash
# Finds mutable variables that live for the whole run outside State<T> and Lifelong<T> (src/foundation/state.h), in the
# objects of a build.
#   checks/globals.sh [BUILD]    BUILD is build/release if none is named
# What a platform's file holds belongs to the process.
cd "$(dirname "${BASH_SOURCE[0]}")/.." || exit 1
build=${1:-build/release}

# Constants that are made while the program runs, so that they stand among the variables: those named so, and these.
constants='k[A-Z][A-Za-z0-9]*(\[abi:cxx11\])?|\w+_is_guarded|MessageTable\(\)::table|FindEntry\(.*\)::entries'
constants+='|EnglishWords\(\)::words|OriginalLevels\(\)::levels|TrleFolders\[abi:cxx11\]\(\)::folders'

mapfile -t objects < <(find "$build/src" -name '*.cpp.o')
((${#objects[@]})) || { echo "no objects in $build" >&2; exit 1; }
# "object.o:name"; References and tables that the loader only fills in are in .data.rel.ro.
variables=$(nm -AC --format=sysv --defined-only "${objects[@]}" |
    awk -F '|' '$NF ~ /^\.(t?bss|t?data)/ && $NF !~ /^\.data\.rel\.ro/ { sub(/^.*\//, "", $1); sub(/ +$/, "", $1); print $1 }' |
    grep -E '^[^:]*:kelvash::' | sort -u)
grep -q ':kelvash::State<.*>::held_$' <<<"$variables" || { echo "no State<T> found in $build" >&2; exit 1; }
if grep -vE ":kelvash::(State|Lifelong)<|:kelvash::platform::|::staticMetaObject$|::($constants)$" <<<"$variables"; then
    echo "These are mutable and live for the whole run: see src/foundation/state.h."
    exit 1
fi
