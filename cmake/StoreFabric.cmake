# Rules shared by every target: language level, warnings, precompiled headers, sanitizers, output folders.
set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/lib)
set(CMAKE_ARCHIVE_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/lib)

# The compiler cache must accept precompiled headers, which it treats as inputs whose time may differ,
# and must find what another checkout of the same sources has compiled.
find_program(HV_CCACHE ccache)
if(HV_CCACHE)
  set(CMAKE_CXX_COMPILER_LAUNCHER
      ${CMAKE_COMMAND} -E env CCACHE_SLOPPINESS=pch_defines,time_macros,include_file_mtime,include_file_ctime
      CCACHE_BASEDIR=${CMAKE_SOURCE_DIR} CCACHE_NOHASHDIR=1
      ${HV_CCACHE})
endif()

add_library(hv_options INTERFACE)
target_compile_options(hv_options INTERFACE
    -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Wnon-virtual-dtor -Werror)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  # ccache looks into a precompiled header only if the preprocessor is told to keep it.
  target_compile_options(hv_options INTERFACE -fpch-preprocess)
else()
  # Collections name the typed and the late-bound way to an item alike; GNU keeps quiet about that.
  target_compile_options(hv_options INTERFACE -Wno-overloaded-virtual)
endif()
target_include_directories(hv_options INTERFACE ${CMAKE_SOURCE_DIR} ${CMAKE_SOURCE_DIR}/include
                           ${CMAKE_SOURCE_DIR}/src)

if(HV_SANITIZE)
  # Interfaces cross modules with hidden type information, which the vptr check cannot follow.
  add_compile_options(-fsanitize=address,undefined -fno-sanitize=vptr -fno-sanitize-recover=all
                      -fno-omit-frame-pointer)
  add_link_options(-fsanitize=address,undefined)
endif()
if(HV_COVERAGE)
  add_compile_options(--coverage)
  add_link_options(--coverage)
endif()
if(HV_FUZZ)
  add_compile_options(-fsanitize=fuzzer-no-link,address,undefined -fno-sanitize=vptr
                      -fno-sanitize-recover=all)
  add_link_options(-fsanitize=address,undefined)
endif()

# The standard headers that nearly every source includes, compiled once per build.
file(WRITE ${CMAKE_BINARY_DIR}/pch/empty.cpp "")
add_library(hv_pch STATIC ${CMAKE_BINARY_DIR}/pch/empty.cpp)
target_link_libraries(hv_pch PRIVATE hv_options)
target_precompile_headers(hv_pch PRIVATE <algorithm> <array> <cstdint> <cstring> <functional> <map>
    <memory> <optional> <span> <stdexcept> <string> <string_view> <tuple> <unordered_map> <utility>
    <variant> <vector>)

# The precompiled headers are made as position-independent code, and a program that uses them must be too.
function(hv_use_pch name)
  if(HV_NO_PCH)  # tools that read the compile commands can't read another compiler's headers
    return()
  endif()
  target_precompile_headers(${name} REUSE_FROM hv_pch)
  get_target_property(type ${name} TYPE)
  if(type STREQUAL "EXECUTABLE")
    set_target_properties(${name} PROPERTIES POSITION_INDEPENDENT_CODE OFF)
    target_compile_options(${name} PRIVATE -fPIC)
  endif()
endfunction()

# hv_add_library(NAME SOURCES a.cpp b.cpp LIBS x y)
# A static library of one folder, linked into the modules that need it.
function(hv_add_library name)
  cmake_parse_arguments(A "" "" "SOURCES;LIBS;PRIVATE_LIBS" ${ARGN})
  add_library(${name} STATIC ${A_SOURCES})
  target_link_libraries(${name} PUBLIC hv_options ${A_LIBS} PRIVATE ${A_PRIVATE_LIBS})
  hv_use_pch(${name})
endfunction()

# hv_add_test(NAME SOURCES a.cpp LIBS x y [ENV A=B ...])
# A test program with its own ctest entry. TEST_DATA_DIR is tests/data; SF_BIN_DIR holds the loadable modules.
function(hv_add_test name)
  cmake_parse_arguments(A "NO_MAIN" "" "SOURCES;LIBS;ENV;LABELS;DEPENDS" ${ARGN})
  add_executable(${name} ${A_SOURCES})
  target_link_libraries(${name} PRIVATE hv_options ${A_LIBS} GTest::gmock GTest::gtest)
  if(NOT A_NO_MAIN)
    target_link_libraries(${name} PRIVATE GTest::gtest_main)
  endif()
  hv_use_pch(${name})
  target_compile_definitions(${name} PRIVATE HV_TEST_DATA_DIR="${CMAKE_SOURCE_DIR}/tests/data"
                             HV_BINARY_DIR="${CMAKE_BINARY_DIR}")
  add_test(NAME ${name} COMMAND ${name})
  set_tests_properties(${name} PROPERTIES TIMEOUT 600 ENVIRONMENT
      "XDG_CONFIG_HOME=${CMAKE_BINARY_DIR}/test-config;${A_ENV}" LABELS "${A_LABELS}")
  if(A_DEPENDS)
    add_dependencies(${name} ${A_DEPENDS})
  endif()
endfunction()
