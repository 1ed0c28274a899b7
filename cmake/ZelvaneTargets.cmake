# One way to make every target alike: C++20, warnings as errors, no contraction of multiply and add
# (a result must not change with the compiler's mood), include root src/.

add_library(zelvane_options INTERFACE)
target_compile_features(zelvane_options INTERFACE cxx_std_20)
target_include_directories(zelvane_options INTERFACE ${PROJECT_SOURCE_DIR}/src)
target_compile_options(zelvane_options INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Werror -ffp-contract=off
  # Clang counts changes of sign under -Wconversion; GCC, whose warnings are the ones kept here, does not.
  $<$<CXX_COMPILER_ID:Clang,AppleClang>:-Wno-sign-conversion>)
if(ZELVANE_PCH)
  target_compile_options(zelvane_options INTERFACE -Wno-array-bounds -Wno-restrict -Wno-stringop-overflow -Wno-stringop-overread)
endif()
if(ZELVANE_SANITIZE OR ZELVANE_TSAN)
  # Under its sanitizers GCC 12 takes the standard library's own code (<regex>) for uninitialised.
  target_compile_options(zelvane_options INTERFACE -Wno-maybe-uninitialized)
endif()
if(ZELVANE_SANITIZE)
  target_compile_options(zelvane_options INTERFACE
    -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(zelvane_options INTERFACE -fsanitize=address,undefined)
  target_compile_definitions(zelvane_options INTERFACE ZELVANE_SANITIZED)
endif()
if(ZELVANE_TSAN)
  target_compile_options(zelvane_options INTERFACE -fsanitize=thread -fno-omit-frame-pointer)
  target_link_options(zelvane_options INTERFACE -fsanitize=thread)
  target_compile_definitions(zelvane_options INTERFACE ZELVANE_SANITIZED)
endif()
if(ZELVANE_COVERAGE)
  target_compile_options(zelvane_options INTERFACE --coverage)
  target_link_options(zelvane_options INTERFACE --coverage)
endif()

# The standard headers, precompiled once for all libraries and once, with those of the tests, for all tests: with ZELVANE_PCH, for
# builds by hand. The presets build without: that proves that each file includes what it uses. GCC 12 takes strings joined in a
# precompiled header for faults, though they are none.
set(zelvane_standard_headers
  <algorithm> <array> <bit> <charconv> <cmath> <cstddef> <cstdint> <cstdio> <cstring> <deque> <functional> <limits> <map> <memory>
  <numeric> <optional> <ostream> <set> <span> <string> <string_view> <utility> <vector>)

# zelvane_precompile(TARGET FROM OTHER [HEADERS ...]): the precompiled headers of OTHER; OTHER itself makes them.
function(zelvane_precompile TARGET)
  cmake_parse_arguments(ARG "" "FROM" "HEADERS" ${ARGN})
  if(NOT ZELVANE_PCH)
    return()
  elseif("${TARGET}" STREQUAL "${ARG_FROM}")
    target_precompile_headers(${TARGET} PRIVATE ${zelvane_standard_headers} ${ARG_HEADERS})
  else()
    target_precompile_headers(${TARGET} REUSE_FROM ${ARG_FROM})
  endif()
endfunction()

# zelvane_add_subsystem(NAME SOURCES ... HEADERS ... DEPENDS ...)
# A folder of src/ as one static library. DEPENDS names the folders whose headers it may include, all of
# them below it; *_store.h headers hold data only and may be included by any folder.
function(zelvane_add_subsystem NAME)
  cmake_parse_arguments(ARG "" "" "SOURCES;HEADERS;DEPENDS;LIBRARIES" ${ARGN})
  set(target zelvane_${NAME})
  add_library(${target} STATIC ${ARG_SOURCES})
  target_sources(${target} PUBLIC FILE_SET HEADERS BASE_DIRS ${PROJECT_SOURCE_DIR}/src FILES ${ARG_HEADERS})
  set_target_properties(${target} PROPERTIES CXX_EXTENSIONS OFF VERIFY_INTERFACE_HEADER_SETS ON)
  target_link_libraries(${target} PUBLIC zelvane_options)
  foreach(folder IN LISTS ARG_DEPENDS)
    target_link_libraries(${target} PUBLIC zelvane_${folder})
  endforeach()
  target_link_libraries(${target} PRIVATE ${ARG_LIBRARIES})
  if(NOT NAME STREQUAL desktop)  # which precompiles those of its toolkit
    zelvane_precompile(${target} FROM zelvane_platform)
  endif()
endfunction()
