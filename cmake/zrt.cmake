# Compiler settings that every target of the house shares, and the two ways to declare one.

add_library(zrt_options INTERFACE)
target_include_directories(zrt_options INTERFACE ${CMAKE_SOURCE_DIR}/src)
target_compile_options(zrt_options INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Werror)
if(ZRT_SANITIZE)
  target_compile_options(zrt_options INTERFACE -fsanitize=address,undefined -fno-sanitize-recover=undefined
                                               -fno-omit-frame-pointer)
  target_link_options(zrt_options INTERFACE -fsanitize=address,undefined)
endif()
# Compilers later than the one we use find more; a shop that builds from source must not fail on their warnings.
if(NOT CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
  target_compile_options(zrt_options INTERFACE -Wno-error)
endif()

set(ZRT_PCH <algorithm> <array> <cstdint> <functional> <map> <memory> <optional> <string> <string_view> <vector>
            <fmt/format.h>)

# zrt_room(NAME [SOURCES ...] [DEPENDS ...] [PRIVATE_DEPENDS ...]): one folder below src/ as a static library zrt_NAME.
# A room sees only what DEPENDS names, so an include that points upwards does not link.
function(zrt_room name)
  cmake_parse_arguments(ROOM "" "" "SOURCES;DEPENDS;PRIVATE_DEPENDS" ${ARGN})
  add_library(zrt_${name} STATIC ${ROOM_SOURCES})
  target_link_libraries(zrt_${name} PUBLIC zrt_options fmt::fmt ${ROOM_DEPENDS} PRIVATE ${ROOM_PRIVATE_DEPENDS})
  target_precompile_headers(zrt_${name} PRIVATE ${ZRT_PCH})
endfunction()
