#!/usr/bin/env bash
# Colours, sizes in pixels and style sheets stand in src/ui/look* alone; forms speak of roles and steps. look_spellings.txt
# has ways of writing them that have to be refused, and others that look like them and are none.
cd "$(dirname "${BASH_SOURCE[0]}")/.." || exit 1

(($(grep -cvE '^(#|$)' checks/look_spellings.txt) > 80)) || { echo "no spellings found" >&2; exit 1; }
perl checks/look.pl --line <checks/look_spellings.txt || { echo "This check is broken: see checks/look.pl." >&2; exit 1; }
mapfile -t files < <(find src/ui -type f -not -path 'src/ui/look*' \
    -regex '.*\.\(cpp\|h\|inc\|qss\|css\|ui\)' | sort)
((${#files[@]})) || { echo "no forms found" >&2; exit 1; }
if ! perl checks/look.pl "${files[@]}"; then
    echo "These belong into src/ui/look.h."
    exit 1
fi
