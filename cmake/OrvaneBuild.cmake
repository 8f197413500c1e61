# Compiler, build types, warnings, and the two tools that make building quick when they are there: ccache and mold.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/bin")

option(ORVANE_PRECOMPILED "Precompile the heavy headers (off for clang-tidy)" ON)
option(ORVANE_VERIFY_HEADERS "Add the target all_verify_interface_header_sets: every header compiles alone" OFF)
option(ORVANE_FUZZ "Build the fuzz targets of src/*/fuzz instead of the tests (needs clang)" OFF)
if(ORVANE_PRECOMPILED)
  set(CMAKE_DISABLE_PRECOMPILE_HEADERS OFF)
else()
  set(CMAKE_DISABLE_PRECOMPILE_HEADERS ON)
endif()

if(NOT CMAKE_BUILD_TYPE)
  set(CMAKE_BUILD_TYPE Dev CACHE STRING "Dev, Release or Sanitize" FORCE)
endif()
# Asserts stay on in Release: a programmer's error must stop before it writes.
set(CMAKE_CXX_FLAGS_DEV "-O1 -g1")
set(CMAKE_CXX_FLAGS_RELEASE "-O2")
set(CMAKE_CXX_FLAGS_SANITIZE "-O1 -g1 -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer")
set(CMAKE_EXE_LINKER_FLAGS_SANITIZE "-fsanitize=address,undefined")
if(ORVANE_FUZZ)
  add_compile_options(-fsanitize=fuzzer-no-link,address,undefined -fno-sanitize-recover=all)
  add_link_options(-fsanitize=address,undefined)
endif()

add_library(orvane_warnings INTERFACE) # linked PRIVATE by our own code only
target_compile_options(orvane_warnings INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wconversion)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  # g++ 12 reports overlapping copies inside std::string's operator+ that are not there, with all optimisations also
  # copies beyond its short buffer, and reads of std::variant members that are never made.
  target_compile_options(orvane_warnings INTERFACE -Werror -Wno-restrict -Wno-maybe-uninitialized
    $<$<CONFIG:Release>:-Wno-array-bounds>)
endif()

find_program(ORVANE_CCACHE ccache)
if(ORVANE_CCACHE AND (NOT CMAKE_CXX_COMPILER_LAUNCHER OR CMAKE_CXX_COMPILER_LAUNCHER MATCHES "ccache$"))
  # The sloppiness lets units with a precompiled header hit the cache; without the directory in the hash, and with paths
  # counted from the tree's root, all build directories of all checkouts share one cache.
  set(CMAKE_CXX_COMPILER_LAUNCHER
      env "CCACHE_SLOPPINESS=pch_defines,time_macros,include_file_mtime,include_file_ctime" CCACHE_NOHASHDIR=1 CCACHE_PCH_EXTSUM=1
      "CCACHE_BASEDIR=${CMAKE_SOURCE_DIR}" "${ORVANE_CCACHE}")
endif()

find_program(ORVANE_MOLD mold)
if(ORVANE_MOLD AND CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  add_link_options(-fuse-ld=mold)
endif()
