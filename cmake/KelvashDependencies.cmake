# Every outside library, found once, from the system's packages.
find_package(PkgConfig REQUIRED)
find_package(ZLIB REQUIRED)
find_package(nlohmann_json REQUIRED)
find_package(CLI11 REQUIRED)
find_package(SDL2 REQUIRED)
find_package(X11 REQUIRED COMPONENTS Xtst)
pkg_check_modules(LIBDEFLATE REQUIRED IMPORTED_TARGET libdeflate)
pkg_check_modules(TURBOJPEG REQUIRED IMPORTED_TARGET libturbojpeg)
