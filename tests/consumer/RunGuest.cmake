# Builds the consumer project with this one inside it, and runs it.
#   cmake -D SOURCE_DIR=... -D SCRATCH_DIR=... -D COMPILER=... -D LAUNCHER=... -D FLAGS=... -P RunGuest.cmake
cmake_minimum_required(VERSION 3.21)
include("${CMAKE_CURRENT_LIST_DIR}/Run.cmake")

run("${CMAKE_COMMAND}" -S "${CMAKE_CURRENT_LIST_DIR}" -B "${SCRATCH_DIR}" -G Ninja "-DVANTOR_SOURCE_DIR=${SOURCE_DIR}"
  "-DCMAKE_BUILD_TYPE=None" "-DCMAKE_CXX_COMPILER=${COMPILER}" "-DCMAKE_CXX_COMPILER_LAUNCHER=${LAUNCHER}"
  "-DCMAKE_CXX_FLAGS=${FLAGS} -O0" "-DCMAKE_UNITY_BUILD=ON" "-DCMAKE_UNITY_BUILD_BATCH_SIZE=16")
run("${CMAKE_COMMAND}" --build "${SCRATCH_DIR}")
run("${SCRATCH_DIR}/consumer")
run("${SCRATCH_DIR}/print_summary" "${CMAKE_CURRENT_LIST_DIR}/../data/bmx-as02-as02b.mxf")
# Static libraries, of which nothing is installed.
file(GLOB_RECURSE shared "${SCRATCH_DIR}/*vantor_*.so")
run("${CMAKE_COMMAND}" --install "${SCRATCH_DIR}" --prefix "${SCRATCH_DIR}/prefix")
file(GLOB_RECURSE installed "${SCRATCH_DIR}/prefix/*")
if(shared OR installed)
  message(FATAL_ERROR "shared libraries: ${shared}; installed: ${installed}")
endif()
