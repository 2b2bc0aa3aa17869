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
  set(CMAKE_CXX_COMPILER_LAUNCHER ${CCACHE_PROGRAM})
endif()

add_library(kelvash_options INTERFACE)
target_compile_options(kelvash_options INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wold-style-cast -Wnon-virtual-dtor -Werror)

if(KELVASH_SANITIZE)
  target_compile_options(kelvash_options INTERFACE
    -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(kelvash_options INTERFACE -fsanitize=address,undefined)
endif()

if(KELVASH_FUZZ)
  target_compile_options(kelvash_options INTERFACE -fsanitize=fuzzer-no-link,address,undefined
    -fno-sanitize-recover=all)
  target_link_options(kelvash_options INTERFACE -fsanitize=address,undefined)
endif()
