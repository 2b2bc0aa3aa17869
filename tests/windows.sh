#!/usr/bin/env bash
# Builds for Windows with mingw-w64 and tests under Wine, in a Wine prefix of its own below build/windows. Where
# packaging/windows/build.sh has put the foreign libraries: everything that they allow, every test program and a walk
# through the command line. Elsewhere logic and command line are compiled only, and the foundation is tested. Installs
# what is missing. Arguments go to the test programs.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
source cmake/packages.sh
install_missing "${windows_packages[@]}"

build=build/windows
limit=900 # seconds for a test program
posix_only="cli breaking" # they run programs by POSIX's own means

KELVASH_WINDOWS_PREFIX=$(packaging/windows/build.sh --where)
if [[ ! -f $KELVASH_WINDOWS_PREFIX/stamps/libsoxr ]]; then
    KELVASH_WINDOWS_PREFIX=
    install_missing "${build_packages[@]}" # their headers have to do
fi
export KELVASH_WINDOWS_PREFIX
cmake --preset windows
cmake --build "$build"

export WINEPREFIX="$PWD/$build/prefix" WINEARCH=win64 WINEDEBUG=-all WINEDLLOVERRIDES="mscoree,mshtml="
export QT_QPA_PLATFORM=offscreen
unset DISPLAY
if [[ -n $KELVASH_WINDOWS_PREFIX ]]; then
    libraries="Z:${KELVASH_WINDOWS_PREFIX//\//\\}"
    runtime=$(dirname "$(x86_64-w64-mingw32-g++-posix -print-file-name=libstdc++-6.dll)")
    export WINEPATH="$libraries\\bin;Z:${runtime//\//\\};Z:\\usr\\x86_64-w64-mingw32\\lib"
    export QT_PLUGIN_PATH="$libraries\\plugins"
fi
if [[ ! -f $WINEPREFIX/ready ]]; then
    wineboot -i
    # Windows without a display.
    wine reg add 'HKCU\Software\Wine\Drivers' /v Graphics /d null /f
    wineserver -w
    touch "$WINEPREFIX/ready"
fi

cases() { cat "$@" 2>/dev/null | grep -cE '^TEST(_F|_P)?\(' || true; }

failed=()
run_tests() {
    local name=$1 log=$build/$1-tests.log status=0 passed
    shift
    timeout "$limit" wine "$build/tests/${name}_tests.exe" --gtest_brief=1 "$@" >"$log" 2>&1 || status=$?
    passed=$(sed -nE 's/^\[  PASSED  \] ([0-9]+) tests?.*/\1/p' "$log")
    echo "$name: ${passed:-none} passed, $(cases tests/"$name"/posix/*_test.cpp) need POSIX"
    if ((status)); then
        echo "$name: FAILED (status $status; 124 is the time limit), all of it is in $log"
        grep -E 'Failure|FAILED|^C\+\+ exception' "$log" | head -n 40
        failed+=("$name")
    fi
}

for program in "$build"/tests/*_tests.exe; do
    name=$(basename "$program" _tests.exe)
    run_tests "$name" "$@"
done
for name in $posix_only; do
    echo "$name: $(cases tests/"$name"/*_test.cpp tests/"$name"/posix/*_test.cpp) need POSIX"
done

# --- the command line, from a demo to a restore ---

cli() { timeout "$limit" wine "$build/bin/kelvash-cli.exe" "$@" 2>/dev/null </dev/null | tr -d '\r'; }
# The last line that a command writes, and that of `status` which names the level that is in.
expect() {
    local want=$1 got
    shift
    got=$(cli "$@" | tail -n 1)
    [[ $got == "$want" ]] || { echo "kelvash-cli $*: \"$got\" instead of \"$want\"" && return 1; }
}
walk() {
    local sandbox=$build/sandbox home=$build/sandbox/drive_c/Kelvash
    rm -rf "$sandbox"
    cli --yes demo "$sandbox" | grep -q '^Level zips: .*\\drive_c\\zips$' &&
        expect 'Installed level: 1' --home "$home" --yes install 1 &&
        cli --home "$home" status | grep -qx 'Folder of the level in TRLE: C:\\Levels\\LEVEL_0001' &&
        expect 'Installed level: 0' --home "$home" --yes restore fast &&
        cli --home "$home" status | grep -qx 'Levels: 5'
}
if [[ -f $build/bin/kelvash-cli.exe ]]; then
    if walk; then echo "command line: passed"; else failed+=("command line"); fi
fi

wineserver -k || true
if ((${#failed[@]})); then
    echo "FAILED under Wine: ${failed[*]}"
    exit 1
fi
