# What every target of the project shares: language level, warnings, sanitizers, ccache.

find_program(ZR_CCACHE ccache)
if(ZR_CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
  set(CMAKE_CXX_COMPILER_LAUNCHER "${ZR_CCACHE}")
endif()

if(NOT CMAKE_BUILD_TYPE AND NOT CMAKE_CONFIGURATION_TYPES)
  set(CMAKE_BUILD_TYPE RelWithDebInfo CACHE STRING "Build type" FORCE)
endif()
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/bin")
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/lib")

if(ZRCALLOUTS_SANITIZE)
  add_compile_options(-fsanitize=${ZRCALLOUTS_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=undefined)
  add_link_options(-fsanitize=${ZRCALLOUTS_SANITIZE})
endif()

find_package(Threads REQUIRED)

set(zr_standard_headers <algorithm> <array> <atomic> <cmath> <cstdint> <functional> <map> <memory> <mutex> <optional> <set>
  <string> <string_view> <tuple> <unordered_map> <unordered_set> <utility> <vector>)

# zr_target(TARGET [HEADERS...]): the house rules for one target; HEADERS are precompiled besides the standard ones.
function(zr_target target)
  target_compile_features(${target} PUBLIC cxx_std_20)
  set_target_properties(${target} PROPERTIES CXX_EXTENSIONS OFF)
  target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual)
  if(ZRCALLOUTS_WERROR)
    target_compile_options(${target} PRIVATE -Werror)
  endif()
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
    target_compile_options(${target} PRIVATE -Wno-restrict -Wno-array-bounds -Wno-stringop-overread
                           -Wno-stringop-overflow)  # false alarms on std::string
  endif()
  if(CMAKE_CXX_COMPILER_ID MATCHES "Clang")
    target_compile_options(${target} PRIVATE -Wthread-safety)
  endif()
  # A third of the build time. Switch it off to find a file that forgot an include.
  if(ZRCALLOUTS_PRECOMPILED_HEADERS)
    target_precompile_headers(${target} PRIVATE ${zr_standard_headers} ${ARGN})
  endif()
endfunction()
