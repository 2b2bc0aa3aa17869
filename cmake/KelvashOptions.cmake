# The one place for the language level, the warnings and the sanitizers. Every target links kelvash_options.
set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)

# The suffix of the files that are written once per platform.
if(WIN32)
  set(KELVASH_PLATFORM windows)
else()
  set(KELVASH_PLATFORM posix)
endif()

find_program(CCACHE_PROGRAM ccache)
if(CCACHE_PROGRAM)
  # Paths below the sources count as relative, so that one build finds what another has compiled; without the
  # sloppiness nothing is kept that uses precompiled headers.
  set(CMAKE_CXX_COMPILER_LAUNCHER ${CMAKE_COMMAND} -E env CCACHE_BASEDIR=${CMAKE_SOURCE_DIR} CCACHE_NOHASHDIR=1
    CCACHE_SLOPPINESS=pch_defines,time_macros ${CCACHE_PROGRAM})
endif()

# The linker that is fast, where it is.
find_program(LLD_PROGRAM ld.lld)
if(LLD_PROGRAM AND NOT WIN32)
  add_link_options(-fuse-ld=lld)
endif()

# What most sources include of the language's library: a third of the time of a unit. Each file names what it uses all the
# same, for clang-tidy and other checks compile without it.
set(KELVASH_PRECOMPILED <algorithm> <array> <chrono> <cstdint> <filesystem> <fstream> <functional> <map> <memory>
  <optional> <string> <string_view> <utility> <vector>)

# A stack trace needs lines; the rest of the debugging information is a fifth of the time of a build.
set(CMAKE_CXX_FLAGS_RELWITHDEBINFO "-O2 -g1 -DNDEBUG")

add_library(kelvash_options INTERFACE)
target_compile_options(kelvash_options INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wold-style-cast -Wnon-virtual-dtor -Wsuggest-override
  -Wzero-as-null-pointer-constant -Werror)

# What every program has on Windows: UTF-8 from the system, and an icon.
function(kelvash_program target)
  if(WIN32)
    target_sources(${target} PRIVATE ${CMAKE_SOURCE_DIR}/packaging/windows/kelvash.rc)
  endif()
endfunction()
# The same for one without Qt: no libraries of the compiler beside it.
function(kelvash_plain_program target)
  kelvash_program(${target})
  if(WIN32)
    target_link_options(${target} PRIVATE -static)
  endif()
endfunction()
if(WIN32)
  enable_language(RC)
endif()

if(KELVASH_SANITIZE)
  # The program alone is built with them; test code is compiled more often than it is searched for faults.
  set(KELVASH_SANITIZERS -O1 -UNDEBUG -fsanitize=address,undefined,fuzzer-no-link -fno-sanitize-recover=all
    -fno-omit-frame-pointer)
  add_link_options(-fsanitize=address,undefined)
endif()
