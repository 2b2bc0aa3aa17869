#!/usr/bin/env bash
# Includes look down, those of .cpp files too: each folder may name the ones before it. Of the subsystems that stand
# beside each other each line says whom one may ask.
cd "$(dirname "${BASH_SOURCE[0]}")/.." || exit 1

declare -A below
below[foundation]=""
below[trle_state]="foundation"
below[core]="foundation trle_state"
below[cd]="${below[core]} core"
below[media]="${below[core]} core"
below[trle]="${below[core]} core"
below[companion]="${below[trle]} trle"
below[swap]="${below[core]} core media trle"
below[intake]="${below[swap]} swap companion"
below[ui]="${below[intake]} intake cd"
below[cli]="${below[ui]}"

# They command what is above their folder, and are to move above it.
commanders='^src/core/(start_up|remove_level|level_view|tr4_info|profile)\.cpp |^src/swap/install\.cpp companion'
status=0
while read -r file folder; do
    from=${file#src/}
    from=${from%%/*}
    [[ $folder == "$from" || " ${below[$from]} " == *" $folder "* ]] && continue
    [[ "$file $folder" =~ $commanders ]] && continue
    echo "$file may not include what is in $folder"
    status=1
done < <(grep -rnoE '^#include "[a-z_]+/' src --include='*.cpp' --include='*.h' |
    sed -E 's/^([^:]*):[0-9]+:#include "([a-z_]+)\//\1 \2/' | sort -u)
exit "$status"
