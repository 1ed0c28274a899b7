# Holds the include lines of src/ to the table of folders in docs/architecture.md.
#
#   1. The folders that a CMakeLists.txt names as DEPENDS are those of the table's last column, and all of them stand
#      above it in the table.
#   2. A file includes headers of its own folder, of the folders that its folder uses, and of those that these use.
#   3. A header that its folder does not list under HEADERS is private: no other folder includes it.
#   4. Controls (screen/screen.h) are known to *_panel files, to screen/ and to what lies above the subjects.
#   5. Libraries beyond the standard one are included by front ends alone.
#   6. Only platform/safe_file.cpp opens files for writing, so that no writer loses a file or hides a failure.
#
# Usage: cmake -DSOURCE_DIR=.../src -DTABLE=.../docs/architecture.md -P include_check.cmake

cmake_minimum_required(VERSION 3.23)
set(faults "")
set(knows_controls "^(screen|app|headless|desktop|apps)$")
set(knows_libraries "^(headless|desktop|apps)$")

# -- The table: rows "| `folder/` | what it is for | folder, folder |" --
set(folders "")
file(STRINGS ${TABLE} rows REGEX "^\\| `[a-z]+/` \\|")
foreach(row IN LISTS rows)
  string(REGEX REPLACE "^\\| `([a-z]+)/` \\|.*\\| ([^|]*) \\|$" "\\1;\\2" cells "${row}")
  list(GET cells 0 folder)
  list(GET cells 1 uses)
  string(REGEX MATCHALL "[a-z]+" uses "${uses}")
  set(reach ${folder})
  foreach(used IN LISTS uses)
    if(NOT used IN_LIST folders)
      string(APPEND faults "The table lets ${folder} use ${used}, which does not stand above it\n")
    endif()
    list(APPEND reach ${reach_${used}})
  endforeach()
  list(REMOVE_DUPLICATES reach)
  set(uses_${folder} ${uses})
  set(reach_${folder} ${reach})
  list(APPEND folders ${folder})
endforeach()

# -- What CMake is told --
foreach(folder IN LISTS folders)
  set(listed_${folder} "")
  if(NOT EXISTS ${SOURCE_DIR}/${folder}/CMakeLists.txt)
    string(APPEND faults "The table names ${folder}, which is not there\n")
    continue()
  endif()
  file(READ ${SOURCE_DIR}/${folder}/CMakeLists.txt lists)
  if(lists MATCHES "HEADERS([^)]*)")
    string(REGEX REPLACE "(DEPENDS|LIBRARIES).*" "" headers "${CMAKE_MATCH_1}")
    string(REGEX MATCHALL "[a-z0-9_/]+\\.h" listed_${folder} "${headers}")
  endif()
  set(declared "")
  if(lists MATCHES "DEPENDS([a-z \n]+)")
    string(REGEX MATCHALL "[a-z]+" declared "${CMAKE_MATCH_1}")
  endif()
  if(lists MATCHES "zelvane_add_subsystem" AND NOT "${declared}" STREQUAL "${uses_${folder}}")
    string(APPEND faults "${folder} depends on '${declared}', but the table says '${uses_${folder}}'\n")
  endif()
endforeach()
file(GLOB present LIST_DIRECTORIES true RELATIVE ${SOURCE_DIR} ${SOURCE_DIR}/*)
foreach(folder IN LISTS present)
  if(IS_DIRECTORY ${SOURCE_DIR}/${folder} AND NOT folder IN_LIST folders)
    string(APPEND faults "${folder} has no row in the table\n")
  endif()
endforeach()

# -- The include lines --
foreach(folder IN LISTS folders)
  file(GLOB_RECURSE sources RELATIVE ${SOURCE_DIR} ${SOURCE_DIR}/${folder}/*.h ${SOURCE_DIR}/${folder}/*.cpp)
  foreach(source IN LISTS sources)
    file(STRINGS ${SOURCE_DIR}/${source} writers REGEX "ofstream|std::fstream|fopen|O_CREAT|QSaveFile")
    if(writers AND NOT source STREQUAL "platform/safe_file.cpp")
      string(APPEND faults "${source} opens a file for writing: ${writers}\n")
    endif()
    file(STRINGS ${SOURCE_DIR}/${source} includes REGEX "^#include [<\"]")
    foreach(line IN LISTS includes)
      if(line MATCHES "^#include <(Q|qcustomplot|nlohmann|CLI)" AND NOT folder MATCHES ${knows_libraries})
        string(APPEND faults "${source}: ${line} is for front ends\n")
      endif()
      if(NOT line MATCHES "^#include \"([a-z]+)/([^\"]+)\"")
        continue()
      endif()
      set(from ${CMAKE_MATCH_1})
      set(header ${CMAKE_MATCH_2})
      if(NOT from IN_LIST reach_${folder})
        string(APPEND faults "${source} includes ${from}/${header}, which ${folder} does not use\n")
      elseif(NOT from STREQUAL folder AND NOT header IN_LIST listed_${from})
        string(APPEND faults "${source} includes ${from}/${header}, which is private to ${from}\n")
      endif()
      if("${from}/${header}" STREQUAL "screen/screen.h" AND NOT folder MATCHES ${knows_controls}
         AND NOT source MATCHES "_panels?\\.(cpp|h)$")
        string(APPEND faults "${source} knows controls and is no panel file\n")
      endif()
    endforeach()
  endforeach()
endforeach()
if(faults)
  message(FATAL_ERROR "The house is not as its table says:\n${faults}")
endif()
