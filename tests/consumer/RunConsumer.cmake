# Installs the build tree, moves the installed tree, builds the consumer project and examples against it, and runs them.
#   cmake -D BUILD_DIR=... -D SCRATCH_DIR=... -D CONFIG=... -D COMPILER=... -D FLAGS=... -D STANDARD=... -P RunConsumer.cmake
cmake_minimum_required(VERSION 3.21)
include("${CMAKE_CURRENT_LIST_DIR}/Run.cmake")

file(REMOVE_RECURSE "${SCRATCH_DIR}")
run("${CMAKE_COMMAND}" --install "${BUILD_DIR}" --config "${CONFIG}" --prefix "${SCRATCH_DIR}/prefix")
set(prefix "${SCRATCH_DIR}/moved/prefix")
file(MAKE_DIRECTORY "${SCRATCH_DIR}/moved")
file(RENAME "${SCRATCH_DIR}/prefix" "${prefix}")
run("${CMAKE_COMMAND}" -S "${CMAKE_CURRENT_LIST_DIR}" -B "${SCRATCH_DIR}/build" -G Ninja
  "-DCMAKE_BUILD_TYPE=${CONFIG}" "-DCMAKE_CXX_COMPILER=${COMPILER}" "-DCMAKE_CXX_FLAGS=${FLAGS}"
  "-DCMAKE_CXX_STANDARD=${STANDARD}" "-DCMAKE_PREFIX_PATH=${prefix}")
run("${CMAKE_COMMAND}" --build "${SCRATCH_DIR}/build" --config "${CONFIG}")
run("${SCRATCH_DIR}/build/consumer")
run("${SCRATCH_DIR}/build/print_summary" "${CMAKE_CURRENT_LIST_DIR}/../data/bmx-as02-as02b.mxf")
run_edit_file("${SCRATCH_DIR}/build/edit_file" "${prefix}" "${SCRATCH_DIR}")
