# Compiles the consumer's programs with what pkg-config has about the tree that RunConsumer.cmake installed, and runs them.
#   cmake -D PREFIX=... -D LIBDIR=... -D SCRATCH_DIR=... -D COMPILER=... -D FLAGS=... -D PKG_CONFIG=... [-D STANDARD=17]
#     -P RunPkgConfig.cmake
cmake_minimum_required(VERSION 3.21)
include("${CMAKE_CURRENT_LIST_DIR}/Run.cmake")

set(ENV{PKG_CONFIG_PATH} "${PREFIX}/${LIBDIR}/pkgconfig")
file(GLOB packages "${PREFIX}/${LIBDIR}/pkgconfig/*.pc")
list(LENGTH packages count)
if(NOT count EQUAL 7)
  message(SEND_ERROR "${count} files for pkg-config: ${packages}")
endif()
foreach(package IN LISTS packages)
  run("${PKG_CONFIG}" --validate "${package}")
endforeach()

if(NOT STANDARD)
  set(STANDARD 17)
elseif(STANDARD EQUAL 23)
  set(STANDARD 2b)  # as compilers of its time know it, too
endif()
separate_arguments(flags UNIX_COMMAND "${FLAGS}")
file(MAKE_DIRECTORY "${SCRATCH_DIR}")
function(build name source)
  execute_process(COMMAND "${PKG_CONFIG}" --cflags --libs ${ARGN} OUTPUT_VARIABLE options COMMAND_ERROR_IS_FATAL ANY)
  separate_arguments(options UNIX_COMMAND "${options}")
  run("${COMPILER}" -std=c++${STANDARD} ${flags} "${source}" -o "${SCRATCH_DIR}/${name}" ${options}
    "-Wl,-rpath,${PREFIX}/${LIBDIR}")
endfunction()
build(consumer "${CMAKE_CURRENT_LIST_DIR}/main.cpp" vantor-xmlbuilder vantor-json)
run("${SCRATCH_DIR}/consumer")
build(print_summary "${CMAKE_CURRENT_LIST_DIR}/../../examples/PrintSummary.cpp" vantor-summary)
run("${SCRATCH_DIR}/print_summary" "${CMAKE_CURRENT_LIST_DIR}/../data/bmx-as02-as02b.mxf")
build(edit_file "${CMAKE_CURRENT_LIST_DIR}/../../examples/EditFile.cpp" vantor-edit)
run_edit_file("${SCRATCH_DIR}/edit_file" "${PREFIX}" "${SCRATCH_DIR}")
