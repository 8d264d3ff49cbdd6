# Configures projects outside this one, and builds nothing: requests for the tree that RunConsumer.cmake installed, and
# these sources in a project without a build type.
#   cmake -D PREFIX=... -D SOURCE_DIR=... -D SCRATCH_DIR=... -D COMPILER=... -D FLAGS=... -P CheckConfigurations.cmake
cmake_minimum_required(VERSION 3.21)
include("${CMAKE_CURRENT_LIST_DIR}/Run.cmake")

file(REMOVE_RECURSE "${SCRATCH_DIR}")
unset(ENV{CMAKE_BUILD_TYPE})
function(configure name source)
  run("${CMAKE_COMMAND}" -S "${source}" -B "${SCRATCH_DIR}/${name}" -G Ninja
    "-DCMAKE_CXX_COMPILER=${COMPILER}" "-DCMAKE_CXX_FLAGS=${FLAGS}" ${ARGN})
endfunction()
configure(package "${CMAKE_CURRENT_LIST_DIR}/package" "-DCMAKE_PREFIX_PATH=${PREFIX}")
configure(guest "${CMAKE_CURRENT_LIST_DIR}" "-DVANTOR_SOURCE_DIR=${SOURCE_DIR}")
