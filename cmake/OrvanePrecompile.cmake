# orvane_precompile(<target> header...)
# Precompiles headers from outside (the standard library, gtest, Qt) for one target: half a second to a second less a unit.
#
# ccache takes the precompiled file into its key, and that file names the build folder: without more, nothing compiled in
# one checkout would be found in another. So a sum stands beside it that tells what it is made of, the headers' names and
# the versions they come in, and ccache takes the sum. It would not see a change inside a header of our own: those and
# generated ones are precompiled without a sum, by target_precompile_headers.
set(ORVANE_STANDARD_HEADERS <algorithm> <array> <cstdint> <functional> <map> <memory> <optional> <span> <string>
    <string_view> <utility> <variant> <vector>)

function(orvane_precompile target)
  target_precompile_headers(${target} PRIVATE ${ARGN})
  string(SHA256 sum "${ARGN};${CMAKE_CXX_COMPILER_VERSION};${GTest_VERSION};${GTEST_VERSION};${Qt6_VERSION}")
  get_target_property(folder ${target} BINARY_DIR)
  file(CONFIGURE OUTPUT "${folder}/CMakeFiles/${target}.dir/cmake_pch.hxx.gch.sum" CONTENT "${sum}\n" @ONLY)
endfunction()
