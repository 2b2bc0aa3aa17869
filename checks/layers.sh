#!/usr/bin/env bash
# Includes look down, those of .cpp files too: each folder may name the ones before it. Of the subsystems that stand
# beside each other each line says whom one may ask.
cd "$(dirname "${BASH_SOURCE[0]}")/.." || exit 1

declare -A below
below[foundation]=""
below[trle_state]="foundation"
below[zip]="foundation"
below[core]="foundation zip trle_state"
below[cd]="${below[core]} core"
below[media]="${below[core]} core"
below[audio]="${below[core]} core"
below[trle]="${below[core]} core"
below[swap]="${below[core]} core audio media trle"
below[companion]="${below[swap]} swap"
below[intake]="${below[companion]} companion"
below[program]="${below[intake]} intake cd"
below[ui]="${below[program]} program"
below[cli]="${below[ui]}"

status=0
while read -r file folder; do
    from=${file#src/}
    from=${from%%/*}
    [[ $folder == "$from" || " ${below[$from]} " == *" $folder "* ]] && continue
    echo "$file may not include what is in $folder"
    status=1
done < <(grep -rnoE '^#include "[a-z_]+/' src --include='*.cpp' --include='*.h' |
    sed -E 's/^([^:]*):[0-9]+:#include "([a-z_]+)\//\1 \2/' | sort -u)
exit "$status"
