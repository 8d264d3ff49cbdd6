# Copies the headers of the API, with includes as others write them.
#   cmake -D ROOT=<repository> -D FOLDER=<include folder> -D NAMES=<folder in it> -P CopyPublicHeaders.cmake
cmake_minimum_required(VERSION 3.21)
include("${CMAKE_CURRENT_LIST_DIR}/VantorPublicHeaders.cmake")

function(write path text)
  if(EXISTS "${path}")
    file(READ "${path}" before)
  endif()
  if(NOT "${before}" STREQUAL "${text}")  # an unchanged header compiles nothing again
    file(WRITE "${path}" "${text}")
  endif()
endfunction()

set(written "")
foreach(header IN LISTS VANTOR_PUBLIC_HEADERS)
  string(REGEX REPLACE "^include/" "" name "${header}")
  file(READ "${ROOT}/${header}" text)
  string(REGEX REPLACE "#include \"([^\"\n]+)\"" "#include <vantor/\\1>" text "${text}")
  write("${FOLDER}/vantor/${name}" "${text}")
  list(APPEND written "vantor/${name}")
endforeach()
foreach(name IN LISTS VANTOR_HEADERS_BY_NAME)
  write("${FOLDER}/${NAMES}/${name}" "#pragma once\n\n#include <vantor/${name}>\n")
  list(APPEND written "${NAMES}/${name}")
endforeach()

# What an earlier list had.
file(GLOB_RECURSE present RELATIVE "${FOLDER}" "${FOLDER}/*")
list(REMOVE_ITEM present ${written})
foreach(name IN LISTS present)
  file(REMOVE "${FOLDER}/${name}")
endforeach()
