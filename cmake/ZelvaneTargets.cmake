# Makes every target alike: C++20, warnings as errors, no contraction of multiply and add (results must not
# depend on the compiler), include root src/.

add_library(zelvane_options INTERFACE)
target_compile_features(zelvane_options INTERFACE cxx_std_20)
target_include_directories(zelvane_options INTERFACE ${PROJECT_SOURCE_DIR}/src)
target_compile_options(zelvane_options INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Werror -ffp-contract=off
  # With -Wconversion Clang also warns of changes of sign. GCC, whose warnings count here, does not.
  $<$<CXX_COMPILER_ID:Clang,AppleClang>:-Wno-sign-conversion>)
if(ZELVANE_PCH)
  target_compile_options(zelvane_options INTERFACE -Wno-array-bounds -Wno-restrict -Wno-stringop-overflow -Wno-stringop-overread)
else()
  # GCC 12 with -O3 takes the joining of a literal and a string for copies that overlap (GCC bug 105651).
  target_compile_options(zelvane_options INTERFACE $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict>)
endif()
if(ZELVANE_SANITIZE OR ZELVANE_TSAN)
  # With its sanitizers GCC 12 reports uninitialised values in the standard library's own code (<regex>).
  target_compile_options(zelvane_options INTERFACE -Wno-maybe-uninitialized)
endif()
if(ZELVANE_SANITIZE)
  target_compile_options(zelvane_options INTERFACE
    -fsanitize=address,undefined,float-cast-overflow -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(zelvane_options INTERFACE -fsanitize=address,undefined,float-cast-overflow)
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

# With ZELVANE_PCH, for builds by hand, the standard headers are precompiled once for all libraries and once,
# with those of the tests, for all tests. The presets build without ZELVANE_PCH, which proves that each file
# includes what it uses. GCC 12 wrongly warns of joined strings in a precompiled header.
set(zelvane_standard_headers
  <algorithm> <array> <bit> <charconv> <cmath> <cstddef> <cstdint> <cstdio> <cstring> <deque> <functional> <limits> <map> <memory>
  <numeric> <optional> <ostream> <set> <span> <string> <string_view> <utility> <vector>)

# zelvane_precompile(TARGET FROM OTHER [HEADERS ...]): uses the precompiled headers of OTHER; OTHER itself
# makes them.
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
# Makes a folder of src/ one static library. DEPENDS names the folders whose headers it may include; all are
# below it. *_store.h headers hold data only, and any folder may include them.
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
  if(NOT NAME STREQUAL desktop)  # precompiles the headers of its toolkit itself
    zelvane_precompile(${target} FROM zelvane_platform)
  endif()
endfunction()
