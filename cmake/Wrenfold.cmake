# Compiler settings and the functions that declare layers, tests and benchmarks.
include(GNUInstallDirs)

option(WRENFOLD_SANITIZE "Build everything with address and undefined-behaviour sanitizers" OFF)
option(WRENFOLD_BENCH "Build the benchmarks" ON)
set(WRENFOLD_FUZZ "" CACHE STRING
    "fuzz: build just what is fuzzed, with libFuzzer; explore: with the explorer (both need clang)")

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/bin")
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/bin")
# Programs and libraries stand side by side in bin/; installed ones in bin/ and lib/wrenfold/.
set(CMAKE_BUILD_RPATH "$ORIGIN")
set(CMAKE_BUILD_RPATH_USE_ORIGIN ON)
set(CMAKE_INSTALL_RPATH "$ORIGIN/../${CMAKE_INSTALL_LIBDIR}/wrenfold" "$ORIGIN")

find_program(WRENFOLD_CCACHE ccache)
if(WRENFOLD_CCACHE)
  set(CMAKE_CXX_COMPILER_LAUNCHER "${WRENFOLD_CCACHE}")
endif()

find_package(fmt REQUIRED)

add_library(wrenfold-settings INTERFACE)
target_compile_options(wrenfold-settings INTERFACE -Wall -Wextra -Wpedantic -Wshadow
                       -Wnon-virtual-dtor -Woverloaded-virtual -Werror)
if(WRENFOLD_SANITIZE)
  target_compile_options(wrenfold-settings INTERFACE -fsanitize=address,undefined
                         -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(wrenfold-settings INTERFACE -fsanitize=address,undefined)
endif()
if(WRENFOLD_FUZZ)
  target_compile_options(wrenfold-settings INTERFACE
                         "-fsanitize-coverage-ignorelist=${CMAKE_SOURCE_DIR}/tests/fuzz/ignored.txt")
endif()
# Inlined, a library's branches would count as ours, and ours again at each place.
if(WRENFOLD_FUZZ STREQUAL "explore")
  target_compile_options(wrenfold-settings INTERFACE -fsanitize-coverage=inline-8bit-counters
                         -fno-inline)
elseif(WRENFOLD_FUZZ)
  # The check of dynamic types keeps a cache by addresses: its branches would look like paths, and new
  # ones in each process; the tests of the debug build have that check. How deep the stack is differs
  # as well.
  target_compile_options(wrenfold-settings INTERFACE -fsanitize=fuzzer-no-link -fno-inline
                         -fno-sanitize=vptr -fno-sanitize-coverage=stack-depth)
endif()

# wrenfold_layer(TARGET FOLDER KIND [ROOMS sub-folders...] [LINKS targets...] [PRIVATE_LINKS targets...]
#                [EXCLUDE files...] [QT])
#
# One folder of src/ is one target, made of all its sources, those of the named rooms included. A
# source includes a header of another folder as "folder/Header.h"; the include path holds just the
# folders that the target links, so an include that goes against the layers does not compile. The
# order of the rooms within a folder is held by a test.
function(wrenfold_layer target folder kind)
  cmake_parse_arguments(arg "QT" "" "ROOMS;LINKS;PRIVATE_LINKS;EXCLUDE" ${ARGN})
  set(root "${CMAKE_SOURCE_DIR}/src/${folder}")
  set(patterns "${root}/*.cpp" "${root}/*.h" "${root}/*.qrc")
  foreach(room IN LISTS arg_ROOMS)
    list(APPEND patterns "${root}/${room}/*.cpp" "${root}/${room}/*.h")
  endforeach()
  file(GLOB sources CONFIGURE_DEPENDS ${patterns})
  foreach(name IN LISTS arg_EXCLUDE)
    list(REMOVE_ITEM sources "${root}/${name}")
  endforeach()
  add_library(${target} ${kind} ${sources})
  set(view "${CMAKE_BINARY_DIR}/layers/${target}")
  cmake_path(GET folder PARENT_PATH parent)
  # A link of an earlier layout would lead into folders that the target does not link.
  file(REMOVE_RECURSE "${view}")
  file(MAKE_DIRECTORY "${view}/${parent}")
  file(CREATE_LINK "${root}" "${view}/${folder}" SYMBOLIC)
  target_include_directories(${target} PUBLIC "${view}")
  target_link_libraries(${target} PUBLIC ${arg_LINKS} PRIVATE wrenfold-settings ${arg_PRIVATE_LINKS})
  if(arg_QT)
    set_target_properties(${target} PROPERTIES AUTOMOC ON AUTORCC ON)
  endif()
endfunction()

# wrenfold_test(NAME FOLDER LINKS...): all sources of tests/FOLDER as one GoogleTest program.
function(wrenfold_test name folder)
  file(GLOB sources CONFIGURE_DEPENDS "${CMAKE_SOURCE_DIR}/tests/${folder}/*.cpp"
       "${CMAKE_SOURCE_DIR}/tests/${folder}/*.h")
  if(NOT sources)
    return()
  endif()
  add_executable(test_${name} ${sources})
  target_link_libraries(test_${name} PRIVATE wrenfold-settings ${ARGN} GTest::gmock)
  target_include_directories(test_${name} PRIVATE "${CMAKE_SOURCE_DIR}/tests")
  target_compile_definitions(test_${name} PRIVATE
    WRENFOLD_SOURCE_DIR="${CMAKE_SOURCE_DIR}" WRENFOLD_BIN_DIR="${CMAKE_BINARY_DIR}/bin")
  add_test(NAME ${name} COMMAND test_${name})
  set_tests_properties(${name} PROPERTIES TIMEOUT 300
    ENVIRONMENT "QT_QPA_PLATFORM=offscreen;ASAN_OPTIONS=detect_leaks=0;LC_ALL=C.UTF-8")
endfunction()
