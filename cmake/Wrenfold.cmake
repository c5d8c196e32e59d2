# Compiler settings and the functions that declare layers, tests and benchmarks.
include(GNUInstallDirs)

option(WRENFOLD_SANITIZE "Build everything with address and undefined-behaviour sanitizers" OFF)
option(WRENFOLD_BENCH "Build the benchmarks" ON)
option(WRENFOLD_PCH "Precompile the standard's and the toolkits' headers" ON)
option(WRENFOLD_FUZZ "Build just what is fuzzed, with libFuzzer (needs clang)" OFF)

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/bin")
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/bin")
# Programs and libraries stand side by side in bin/; installed ones in bin/ and, since the libraries
# are the programs' own, in a folder of the architecture's libraries.
set(CMAKE_BUILD_RPATH "$ORIGIN")
set(CMAKE_BUILD_RPATH_USE_ORIGIN ON)
set(WRENFOLD_LIBRARIES "${CMAKE_INSTALL_LIBDIR}/wrenfold")
if(CMAKE_LIBRARY_ARCHITECTURE)
  set(WRENFOLD_LIBRARIES "lib/${CMAKE_LIBRARY_ARCHITECTURE}/wrenfold")
endif()
set(CMAKE_INSTALL_RPATH "$ORIGIN/../${WRENFOLD_LIBRARIES}")
set(CMAKE_INSTALL_DEFAULT_COMPONENT_NAME wrenfold)

find_program(WRENFOLD_CCACHE ccache)
if(WRENFOLD_CCACHE AND WRENFOLD_PCH)
  # Precompiled headers are looked at by content, not by time.
  set(CMAKE_CXX_COMPILER_LAUNCHER env CCACHE_SLOPPINESS=pch_defines,time_macros
      "${WRENFOLD_CCACHE}")
elseif(WRENFOLD_CCACHE)
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
  # The check of dynamic types keeps a cache by addresses, whose branches would look like new paths;
  # the tests of the debug build have that check.
  target_compile_options(wrenfold-settings INTERFACE -fsanitize=fuzzer-no-link -fno-sanitize=vptr)
endif()

# Code that runs once: making it quick takes more time than it saves.
set(wrenfold_test_options -O0)
if(WRENFOLD_SANITIZE)
  set(wrenfold_main_options -O0)
  # Windows wait for the toolkit and for people; no test asks how quick they are.
  set(wrenfold_window_options -O0)
endif()

# wrenfold_precompile(TARGET SET)
#
# Lets a target use one of the sets of precompiled headers, which all targets of a kind share. They
# hold headers that no change of ours touches; a source names what it needs all the same, so that a
# build without them (WRENFOLD_PCH=OFF) passes too.
set(wrenfold_standard_headers <algorithm> <array> <cstdint> <functional> <map> <memory> <optional>
    <string> <string_view> <unordered_map> <utility> <variant> <vector> <fmt/format.h>)
set(wrenfold_toolkit_headers <QAction> <QApplication> <QBoxLayout> <QEvent> <QIcon> <QMenu>
    <QPainter> <QPointer> <QString> <QStyle> <QTimer> <QWidget>)
set(wrenfold_test_headers <gmock/gmock.h> <gtest/gtest.h>)
set(wrenfold_set_plain ${wrenfold_standard_headers})
set(wrenfold_set_widgets ${wrenfold_standard_headers} ${wrenfold_toolkit_headers})
set(wrenfold_set_test ${wrenfold_standard_headers} ${wrenfold_test_headers})
set(wrenfold_set_widgets_test ${wrenfold_set_widgets} ${wrenfold_test_headers} <QTest>)
function(wrenfold_precompile target set)
  if(NOT WRENFOLD_PCH OR WRENFOLD_FUZZ)
    return()
  endif()
  set(holder wrenfold-headers-${set})
  if(NOT TARGET ${holder})
    set(empty "${CMAKE_BINARY_DIR}/headers/${set}.cpp")
    if(set MATCHES "test")
      # Programs are compiled for another position than libraries, so their headers are as well.
      file(CONFIGURE OUTPUT "${empty}" CONTENT "int main() {}\n")
      add_executable(${holder} EXCLUDE_FROM_ALL "${empty}")
      target_compile_options(${holder} PRIVATE ${wrenfold_test_options})
      target_link_libraries(${holder} PRIVATE GTest::gmock)
    else()
      file(CONFIGURE OUTPUT "${empty}" CONTENT "")
      add_library(${holder} OBJECT "${empty}")
      if(set STREQUAL "widgets")
        target_compile_options(${holder} PRIVATE ${wrenfold_window_options})
      endif()
    endif()
    target_link_libraries(${holder} PRIVATE wrenfold-settings fmt::fmt)
    if(set MATCHES "widgets")
      target_link_libraries(${holder} PRIVATE Qt6::Widgets)
    endif()
    if(set STREQUAL "widgets_test")
      target_link_libraries(${holder} PRIVATE Qt6::Test)
    endif()
    target_precompile_headers(${holder} PRIVATE ${wrenfold_set_${set}})
  endif()
  target_precompile_headers(${target} REUSE_FROM ${holder})
endfunction()

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
  if(NOT kind STREQUAL "STATIC")
    set_target_properties(${target} PROPERTIES INSTALL_RPATH "$ORIGIN")
  endif()
  target_include_directories(${target} PUBLIC "${view}")
  target_link_libraries(${target} PUBLIC ${arg_LINKS} PRIVATE wrenfold-settings ${arg_PRIVATE_LINKS})
  if(arg_QT)
    set_target_properties(${target} PROPERTIES AUTOMOC ON AUTORCC ON)
    target_compile_options(${target} PRIVATE ${wrenfold_window_options})
    wrenfold_precompile(${target} widgets)
  else()
    wrenfold_precompile(${target} plain)
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
  target_compile_options(test_${name} PRIVATE ${wrenfold_test_options})
  if("Qt6::Test" IN_LIST ARGN)
    wrenfold_precompile(test_${name} widgets_test)
  else()
    wrenfold_precompile(test_${name} test)
  endif()
  target_include_directories(test_${name} PRIVATE "${CMAKE_SOURCE_DIR}/tests")
  target_compile_definitions(test_${name} PRIVATE
    WRENFOLD_SOURCE_DIR="${CMAKE_SOURCE_DIR}" WRENFOLD_BIN_DIR="${CMAKE_BINARY_DIR}/bin")
  add_test(NAME ${name} COMMAND test_${name})
  set_tests_properties(${name} PROPERTIES TIMEOUT 300
    ENVIRONMENT "QT_QPA_PLATFORM=offscreen;ASAN_OPTIONS=detect_leaks=0;LC_ALL=C.UTF-8")
  # The longest begin first.
  if(name MATCHES "^(host|fuzz|hostile)$")
    set_tests_properties(${name} PROPERTIES COST 30)
  endif()
endfunction()
