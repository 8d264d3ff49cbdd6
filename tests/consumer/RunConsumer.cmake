# Installs the build tree, builds the consumer project against the installed package, and runs it.
#   cmake -D BUILD_DIR=... -D SCRATCH_DIR=... -D CONFIG=... -D COMPILER=... -D FLAGS=... -P RunConsumer.cmake
function(run)
  execute_process(COMMAND ${ARGN} RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE output)
  if(NOT result EQUAL 0)
    message(FATAL_ERROR "${ARGN}: ${result}\n${output}")
  endif()
  message(STATUS "${output}")
endfunction()

file(REMOVE_RECURSE "${SCRATCH_DIR}")
run("${CMAKE_COMMAND}" --install "${BUILD_DIR}" --config "${CONFIG}" --prefix "${SCRATCH_DIR}/prefix")
run("${CMAKE_COMMAND}" -S "${CMAKE_CURRENT_LIST_DIR}" -B "${SCRATCH_DIR}/build" -G Ninja
  "-DCMAKE_BUILD_TYPE=${CONFIG}" "-DCMAKE_CXX_COMPILER=${COMPILER}" "-DCMAKE_CXX_FLAGS=${FLAGS}"
  "-DCMAKE_PREFIX_PATH=${SCRATCH_DIR}/prefix")
run("${CMAKE_COMMAND}" --build "${SCRATCH_DIR}/build" --config "${CONFIG}")
run("${SCRATCH_DIR}/build/consumer")
