#!/usr/bin/env bash
# Builds the foreign libraries and Qt for 64-bit Windows with mingw-w64, from Debian's source packages, into a folder
# that stays: $KELVASH_WINDOWS_PREFIX, else kelvash/windows in the user's cache.
#   packaging/windows/build.sh           what the logic and the command line need: some ten minutes on two cores
#   packaging/windows/build.sh --window  Qt as well: an hour
#   packaging/windows/build.sh --where   prints the folder
# What stands is not built again; its stamp names the version. Installs what is missing of the compiler and tools.
set -Eeuo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/../.."
top=$PWD
source cmake/packages.sh

export KELVASH_WINDOWS_PREFIX=${KELVASH_WINDOWS_PREFIX:-${XDG_CACHE_HOME:-$HOME/.cache}/kelvash/windows}
prefix=$KELVASH_WINDOWS_PREFIX
work=$prefix/work
log=$prefix/build.log
case ${1:-} in
--where) echo "$prefix"; exit 0 ;;
--window) packages=("${windows_packages[@]}" "${windows_window_packages[@]}") ;;
'') packages=("${windows_packages[@]}") ;;
*) echo "usage: $0 [--window | --where]" >&2; exit 2 ;;
esac
install_missing "${packages[@]}"
mkdir -p "$work" "$prefix/stamps" "$prefix/lib/pkgconfig" "$prefix/include"
: >"$log"

# --- sources ---

# Lists of packages of its own: the system's need not name sources, and are left alone.
apt_sources() {
    local apt=$work/apt
    mkdir -p "$apt/lists/partial" "$apt/cache/archives/partial"
    echo "deb-src http://deb.debian.org/debian bookworm main" >"$apt/sources.list"
    apt-get -o Dir::Etc::sourcelist="$apt/sources.list" -o Dir::Etc::sourceparts=/dev/null \
        -o Dir::State::lists="$apt/lists" -o Dir::Cache="$apt/cache" -q "$@"
}

listed=
# Unpacks the source of a package, with Debian's patches, into work/$1.
fetch() {
    [[ -n $listed ]] || apt_sources update >>"$log" 2>&1
    listed=yes
    rm -rf "${work:?}/$1" && mkdir -p "$work/$1.src"
    (cd "$work/$1.src" && apt_sources source --download-only "$1" && dpkg-source -x ./*.dsc "$work/$1") \
        >>"$log" 2>&1
    rm -rf "$work/$1.src"
}

# --- building ---

building=
fail() {
    tail -n 40 "$log" >&2
    echo "${building:-Nothing} can't be built; all of it is in $log" >&2
}
trap fail ERR

# Builds a package once by a function of the name build_PACKAGE, in its source folder.
stand() {
    local name=$1 start=$SECONDS
    [[ ! -f $prefix/stamps/$name ]] || return 0
    building=$name
    echo "$name ..."
    fetch "$name"
    cd "$work/$name"
    "build_${name//-/_}" >>"$log" 2>&1
    cd "$top"
    dpkg-parsechangelog -l "$work/$name/debian/changelog" -S Version >"$prefix/stamps/$name"
    rm -rf "${work:?}/$name"
    echo "$name $(cat "$prefix/stamps/$name"): $((SECONDS - start)) s"
}

# Configures the source folder $1 with CMake; further arguments are options.
configure() {
    local source=$1
    shift
    cmake -S "$source" -B kelvash-build -G Ninja -DCMAKE_BUILD_TYPE=Release \
        -DCMAKE_TOOLCHAIN_FILE="$top/cmake/mingw-w64.cmake" -DCMAKE_INSTALL_PREFIX="$prefix" \
        -DCMAKE_POLICY_DEFAULT_CMP0074=NEW -DCMAKE_PREFIX_PATH="$prefix" "$@"
}

with_cmake() {
    configure "$@"
    cmake --build kelvash-build
    cmake --install kelvash-build
}

# A file for pkg-config where a library brings none: name, version, what to link.
describe() {
    printf 'prefix=%s\nName: %s\nDescription: %s\nVersion: %s\nCflags: -I${prefix}/include\nLibs: -L${prefix}/lib %s\n' \
        "$prefix" "$1" "$1" "$2" "$3" >"$prefix/lib/pkgconfig/$1.pc"
}

build_zlib() {
    configure .
    cmake --build kelvash-build --target zlibstatic # its DLL needs a file that Debian's source lacks
    cp kelvash-build/libzlibstatic.a "$prefix/lib/libz.a"
    cp zlib.h kelvash-build/zconf.h "$prefix/include/"
    describe zlib 1.2.13 -lz
}
build_bzip2() {
    make CC=x86_64-w64-mingw32-gcc-posix AR=x86_64-w64-mingw32-ar RANLIB=x86_64-w64-mingw32-ranlib libbz2.a
    cp libbz2.a "$prefix/lib/"
    cp bzlib.h "$prefix/include/"
}
build_libdeflate() {
    make CC=x86_64-w64-mingw32-gcc-posix AR=x86_64-w64-mingw32-ar libdeflatestatic.lib
    cp libdeflatestatic.lib "$prefix/lib/libdeflate.a"
    cp libdeflate.h "$prefix/include/"
    describe libdeflate 1.14 -ldeflate
}
build_xxhash() {
    with_cmake cmake_unofficial -DBUILD_SHARED_LIBS=OFF -DXXHASH_BUILD_XXHSUM=OFF
    describe libxxhash 0.8.1 -lxxhash
}
build_libjpeg_turbo() { with_cmake . -DENABLE_SHARED=OFF -DWITH_TURBOJPEG=ON; }
build_libzip() {
    with_cmake . -DBUILD_SHARED_LIBS=OFF -DENABLE_{LZMA,ZSTD,OPENSSL,GNUTLS,MBEDTLS,COMMONCRYPTO}=OFF \
        -DENABLE_WINDOWS_CRYPTO=ON -DENABLE_BZIP2=ON -DBUILD_{TOOLS,REGRESS,EXAMPLES,DOC}=OFF
}
build_libarchive() {
    sed -i 's/"Bcrypt/"bcrypt/' CMakeLists.txt # its names have the case of the system's own
    with_cmake . -DBUILD_SHARED_LIBS=OFF -DENABLE_{TEST,TAR,CPIO,CAT,OPENSSL,LIBB2,LZ4,LZO,LZMA,ZSTD,LIBXML2,EXPAT}=OFF \
        -DENABLE_{ICONV,ACL,XATTR,NETTLE,MBEDTLS}=OFF -DPOSIX_REGEX_LIB=NONE -DENABLE_CNG=ON -DENABLE_ZLIB=ON
    # The static library alone: the shared one would be taken first.
    rm -f "$prefix"/lib/libarchive.dll.a "$prefix"/bin/libarchive*.dll
    mv "$prefix/lib/libarchive_static.a" "$prefix/lib/libarchive.a"
    sed -i -e 's/^Cflags: .*/& -DLIBARCHIVE_STATIC/' -e 's/^Libs: .*/& -lbcrypt/' "$prefix/lib/pkgconfig/libarchive.pc"
}
build_libsndfile() {
    with_cmake . -DBUILD_SHARED_LIBS=OFF -DENABLE_{EXTERNAL_LIBS,MPEG,CPACK}=OFF -DBUILD_{PROGRAMS,EXAMPLES,REGTEST,TESTING}=OFF
}
build_libsoxr() { with_cmake . -DBUILD_SHARED_LIBS=OFF -DWITH_{OPENMP,LSR_BINDINGS}=OFF -DBUILD_{TESTS,EXAMPLES}=OFF; }
build_nlohmann_json3() { with_cmake . -DJSON_BuildTests=OFF; }
build_cli11() { with_cmake . -DCLI11_BUILD_{TESTS,EXAMPLES,DOCS}=OFF -DCLI11_SINGLE_FILE=OFF; }
build_libsdl2() {
    with_cmake . -DSDL_STATIC=OFF -DSDL_{OPENGL,OPENGLES,VULKAN,RENDER_D3D,TEST}=OFF
}
build_qt6_base() {
    # qwindows doesn't link without direct2d; the header of tablets isn't in Debian's source.
    local off=(sql dbus xml concurrent printsupport vulkan tabletevent direct2d1_1 icu zstd glib ssl openssl
        schannel androiddeployqt) options=() feature
    for feature in "${off[@]}"; do options+=("-DFEATURE_$feature=OFF"); done
    for feature in zlib png jpeg freetype harfbuzz pcre2 doubleconversion; do
        options+=("-DFEATURE_system_$feature=OFF")
    done
    with_cmake . -DQT_HOST_PATH=/usr -DQT_HOST_PATH_CMAKE_DIR=/usr/lib/x86_64-linux-gnu/cmake \
        -DQT_QMAKE_TARGET_MKSPEC=win32-g++ -DBUILD_SHARED_LIBS=ON -DINPUT_opengl=no \
        -DQT_BUILD_{TESTS,EXAMPLES,TOOLS_BY_DEFAULT}=OFF "${options[@]}"
}

stand zlib
stand bzip2
stand libdeflate
stand xxhash
stand libjpeg-turbo
stand libzip
stand libarchive
stand nlohmann-json3
stand cli11
stand libsdl2
stand libsndfile
stand libsoxr
[[ ${1:-} != --window ]] || stand qt6-base
echo "The libraries for Windows stand in $prefix"
