# Debian packages that Kelvash needs, and their installation. Sourced by ./run and ./test.

build_packages=(
    cmake ninja-build g++ lld ccache pkg-config
    zlib1g-dev libdeflate-dev libturbojpeg0-dev libzip-dev libarchive-dev libxxhash-dev zip unzip
    libsndfile1-dev libsoxr-dev
    libsdl2-dev libx11-dev libxtst-dev libxfixes-dev libxcb1-dev libxcb-xfixes0-dev
    qt6-base-dev libgl-dev fonts-dejavu-core bootstrap-icons librsvg2-bin
    nlohmann-json3-dev libcli11-dev
    libgtest-dev libgmock-dev
)
check_packages=(
    git libbenchmark-dev
    clang clang-format clang-tidy libclang-rt-14-dev
    sox
    strace xvfb openbox xauth x11-utils dbus-bin dbus-daemon
    lame madplay
)
# A game for Windows, and what plays it: some tests watch one.
game_packages=(g++-mingw-w64-x86-64 wine wine64)
windows_packages=(
    cmake ninja-build ccache googletest
    "${game_packages[@]}"
    dpkg-dev nasm pkg-config
)
# What building Qt for there takes from this system.
windows_window_packages=(qt6-base-dev qt6-base-dev-tools bootstrap-icons librsvg2-bin)

# Installs those of the named packages that are missing. Only this asks for root.
install_missing() {
    local missing=() package
    for package in "$@"; do
        [[ $(dpkg-query -W -f='${Status}' "$package" 2>/dev/null) == "install ok installed" ]] ||
            missing+=("$package")
    done
    ((${#missing[@]})) || return 0
    echo "Installing: ${missing[*]}" >&2
    local as_root=()
    ((EUID == 0)) || as_root=(sudo)
    "${as_root[@]}" apt-get update -q </dev/null >&2 &&
        "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
            apt-get install -q -y --no-install-recommends "${missing[@]}" </dev/null >&2
}
