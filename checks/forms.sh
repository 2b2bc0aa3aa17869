#!/usr/bin/env bash
# Each form that the logic opens (a record with kForm, see src/foundation/form.h) is shown by a runner in the window and
# answered by one in the command line.
cd "$(dirname "${BASH_SOURCE[0]}")/.." || exit 1

# "folder record form"; a record that begins no line of its own has the name "nameless".
mapfile -t records < <(find src -name '*.h' -print0 | xargs -0 awk '
    FNR == 1 { record = "nameless"; split(FILENAME, path, "/") }
    /^ *\/\// { next }
    /^(struct|class) [A-Za-z]/ { record = $2 }
    /^}/ { record = "nameless" }
    / kForm =/ { split($0, part, "\""); print path[2], record, part[2] }')
((${#records[@]})) || { echo "no forms found" >&2; exit 1; }

status=0
for line in "${records[@]}"; do
    read -r folder record form <<<"$line"
    for program in ui cli; do
        grep -rqE "^[^/]*\b(Add|Add\w+Form|FormScope)<([a-z_]+::)*$record\b" --include='*.cpp' "src/$program" && continue
        echo "$form: $folder's $record has no runner in src/$program"
        status=1
    done
done
exit "$status"
