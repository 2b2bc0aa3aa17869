#!/usr/bin/env bash
# The levels of an Archive stand in core::LevelTable and nowhere else, and it alone knows how many they are: only the
# file states a number.
cd "$(dirname "${BASH_SOURCE[0]}")/.." || exit 1

status=0
if grep -rnE '(\.|->)(Levels|LevelCount)\b' src tests bench fuzz --include='*.cpp' --include='*.h' |
    grep -vE '^src/core/archive_file\.cpp:[0-9]+:.*\bheader\.LevelCount\b'; then
    echo "See src/core/level_table.h."
    status=1
fi
if grep -rnE 'vector<(core::)?LevelRecord>' src --include='*.cpp' --include='*.h' | grep -v '^src/core/level_table\.h:'; then
    echo "A second table of levels: see src/core/level_table.h."
    status=1
fi
exit "$status"
