# Compiler settings that every target of the house shares, and the two ways to declare one.

add_library(zrt_options INTERFACE)
target_include_directories(zrt_options INTERFACE ${CMAKE_SOURCE_DIR}/src)
target_compile_options(zrt_options INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Werror)
if(ZRT_SANITIZE)
  target_compile_options(zrt_options INTERFACE -fsanitize=address,undefined -fno-sanitize-recover=undefined
                                               -fno-omit-frame-pointer)
  target_link_options(zrt_options INTERFACE -fsanitize=address,undefined)
endif()
# GCC 12 sees overlapping copies in joined strings where there are none once it optimises.
if(CMAKE_CXX_COMPILER_ID STREQUAL GNU)
  target_compile_options(zrt_options INTERFACE -Wno-restrict -Wno-array-bounds -Wno-stringop-overread
                                               -Wno-stringop-overflow)
endif()
# Clang counts a change of sign among the conversions, GCC doesn't.
if(CMAKE_CXX_COMPILER_ID STREQUAL Clang)
  target_compile_options(zrt_options INTERFACE -Wno-sign-conversion)
endif()
# Compilers later than the ones we use find more; a shop that builds from source must not fail on their warnings.
if((CMAKE_CXX_COMPILER_ID STREQUAL GNU AND CMAKE_CXX_COMPILER_VERSION VERSION_GREATER_EQUAL 13)
   OR (CMAKE_CXX_COMPILER_ID STREQUAL Clang AND CMAKE_CXX_COMPILER_VERSION VERSION_GREATER_EQUAL 15))
  target_compile_options(zrt_options INTERFACE -Wno-error)
endif()

set(ZRT_PCH <algorithm> <array> <cstdint> <functional> <map> <memory> <optional> <string> <string_view> <vector>
            <fmt/format.h>)

# zrt_room(NAME [SOURCES ...] [DEPENDS ...] [PRIVATE_DEPENDS ...]): one folder below src/ as a static library zrt_NAME.
# A room links only what DEPENDS names; the test `includes` keeps its includes from pointing upwards.
function(zrt_room name)
  cmake_parse_arguments(ROOM "" "" "SOURCES;DEPENDS;PRIVATE_DEPENDS" ${ARGN})
  add_library(zrt_${name} STATIC ${ROOM_SOURCES})
  target_link_libraries(zrt_${name} PUBLIC zrt_options fmt::fmt ${ROOM_DEPENDS} PRIVATE ${ROOM_PRIVATE_DEPENDS})
  target_precompile_headers(zrt_${name} PRIVATE ${ZRT_PCH})
endfunction()

# zrt_test(NAME [SERVER] SOURCES ... [DEPENDS ...]): a test program. Each is one test of CTest; with SERVER it gets the
# tests' private database server.
function(zrt_test name)
  cmake_parse_arguments(TEST "SERVER" "" "SOURCES;DEPENDS" ${ARGN})
  add_executable(${name} ${TEST_SOURCES})
  target_link_libraries(${name} PRIVATE zrt_options ${TEST_DEPENDS} GTest::gtest_main)
  target_include_directories(${name} PRIVATE ${CMAKE_SOURCE_DIR}/tests)
  target_precompile_headers(${name} PRIVATE ${ZRT_PCH})
  add_test(NAME ${name} COMMAND ${name})
  set_tests_properties(${name} PROPERTIES TIMEOUT 300)
  if(TEST_SERVER)
    zrt_needs_server(${name})
  endif()
endfunction()

# zrt_needs_server(TEST): CTest starts the private server before TEST and stops it after the last of its kind.
function(zrt_needs_server test)
  set_property(TEST ${test} APPEND PROPERTY FIXTURES_REQUIRED server)
  set_property(TEST ${test} APPEND PROPERTY ENVIRONMENT ODBCSYSINI=${CMAKE_BINARY_DIR}/test-server/odbc)
endfunction()
