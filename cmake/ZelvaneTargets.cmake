# One way to make every target alike: C++20, warnings as errors, no contraction of multiply and add
# (a result must not change with the compiler's mood), include root src/.

add_library(zelvane_options INTERFACE)
target_compile_features(zelvane_options INTERFACE cxx_std_20)
target_include_directories(zelvane_options INTERFACE ${PROJECT_SOURCE_DIR}/src)
target_compile_options(zelvane_options INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Werror -ffp-contract=off
  # Clang counts changes of sign under -Wconversion; GCC, whose warnings are the ones kept here, does not.
  $<$<CXX_COMPILER_ID:Clang,AppleClang>:-Wno-sign-conversion>)
if(ZELVANE_SANITIZE)
  target_compile_options(zelvane_options INTERFACE
    -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(zelvane_options INTERFACE -fsanitize=address,undefined)
  target_compile_definitions(zelvane_options INTERFACE ZELVANE_SANITIZED)
endif()
if(ZELVANE_COVERAGE)
  target_compile_options(zelvane_options INTERFACE --coverage)
  target_link_options(zelvane_options INTERFACE --coverage)
endif()

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
endfunction()
