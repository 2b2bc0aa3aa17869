#!/usr/bin/env bash
# Builds the foundation for Windows with mingw-w64 and runs its tests under Wine, in a Wine prefix of its own
# below build/windows. Installs what is missing. Arguments go to the test program.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
source cmake/packages.sh
install_missing "${windows_packages[@]}"

build=build/windows
cmake --preset windows
cmake --build "$build"

export WINEPREFIX="$PWD/$build/prefix" WINEARCH=win64 WINEDEBUG=-all WINEDLLOVERRIDES="mscoree,mshtml="
unset DISPLAY
if [[ ! -f $WINEPREFIX/ready ]]; then
    wineboot -i
    # Windows without a display.
    wine reg add 'HKCU\Software\Wine\Drivers' /v Graphics /d null /f
    wineserver -w
    touch "$WINEPREFIX/ready"
fi
status=0
wine "$build/tests/foundation_tests.exe" "$@" || status=$?
wineserver -k || true
exit "$status"
