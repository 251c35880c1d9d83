# What every target of the house has in common: warnings, sanitizers, where things are put, and how a test is added.

option(LW_SANITIZE "Build with the address and undefined-behaviour sanitizers" OFF)
option(LW_FUZZ "Build the fuzz targets for libFuzzer (clang)" OFF)

set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/lib)
if(WIN32)
  set(CMAKE_LIBRARY_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin) # libraries are looked for beside the program
endif()
set(CMAKE_ARCHIVE_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/archive)
# Programs find the libraries, and the libraries one another, wherever the build directory is moved to.
set(CMAKE_BUILD_RPATH_USE_ORIGIN ON)
set(CMAKE_INSTALL_RPATH "$ORIGIN/../lib;$ORIGIN")
set(CMAKE_BUILD_WITH_INSTALL_RPATH ON)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_CXX_STANDARD_REQUIRED ON)

find_program(LW_CCACHE ccache)
if(LW_CCACHE)
  set(CMAKE_CXX_COMPILER_LAUNCHER ${LW_CCACHE})
endif()

# house_target(NAME): our own code; warnings are errors.
function(house_target name)
  target_compile_options(${name} PRIVATE -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Werror)
  if(CMAKE_CXX_COMPILER_ID STREQUAL GNU AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
    # GCC 12 sees overlapping copies in std::string where there are none, as soon as it optimises (its bug 105651).
    target_compile_options(${name} PRIVATE -Wno-restrict)
  endif()
  target_include_directories(${name} PRIVATE ${PROJECT_SOURCE_DIR})
  if(LW_SANITIZE)
    target_compile_options(${name} PRIVATE -fsanitize=address,undefined -fno-sanitize-recover=undefined -fno-omit-frame-pointer)
    target_link_options(${name} PRIVATE -fsanitize=address,undefined)
  endif()
  if(LW_FUZZ)
    target_compile_options(${name} PRIVATE -fsanitize=fuzzer-no-link)
  endif()
endfunction()

# house_test(NAME SOURCES file... LIBRARIES target...): a GoogleTest program, each of its tests known to ctest.
# It runs in its own source directory; SAMPLES_DIR and BUILD_DIR are defined as absolute paths.
function(house_test name)
  cmake_parse_arguments(T "" "" "SOURCES;LIBRARIES;DEPENDS" ${ARGN})
  add_executable(${name} ${T_SOURCES})
  house_target(${name})
  target_link_libraries(${name} PRIVATE ${T_LIBRARIES} GTest::gtest GTest::gmock GTest::gtest_main)
  target_compile_definitions(${name} PRIVATE
    SAMPLES_DIR="${PROJECT_SOURCE_DIR}/samples" BUILD_DIR="${CMAKE_BINARY_DIR}" TESTS_DIR="${PROJECT_SOURCE_DIR}/tests")
  set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/tests)
  set_target_properties(${name} PROPERTIES INSTALL_RPATH "$ORIGIN/../lib")
  if(T_DEPENDS)
    add_dependencies(${name} ${T_DEPENDS})
  endif()
  # Minutes for what takes a second: tests of large inputs count on it to end what would take an hour.
  gtest_discover_tests(${name} DISCOVERY_MODE PRE_TEST WORKING_DIRECTORY ${CMAKE_CURRENT_SOURCE_DIR}
    PROPERTIES TIMEOUT 300)
endfunction()
