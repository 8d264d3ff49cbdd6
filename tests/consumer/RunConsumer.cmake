# Installs the build tree, builds the consumer project and an example against the installed package, and runs both.
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
run("${SCRATCH_DIR}/build/print_summary" "${CMAKE_CURRENT_LIST_DIR}/../data/bmx-as02-as02b.mxf")
# The example edits a file, which then differs from the original in one property.
set(original "${CMAKE_CURRENT_LIST_DIR}/../data/gst-audio-ac3.mxf")
configure_file("${original}" "${SCRATCH_DIR}/programme.mxf" COPYONLY)
run("${SCRATCH_DIR}/build/edit_file" "${SCRATCH_DIR}/programme.mxf")
execute_process(COMMAND "${SCRATCH_DIR}/prefix/bin/mxfxml" diff "${original}" "${SCRATCH_DIR}/programme.mxf"
  OUTPUT_VARIABLE differences)
if(EXISTS "${SCRATCH_DIR}/prefix/bin/mxfxml" AND NOT differences MATCHES "ApplicationName [(]ProductName[)]: .* -> \"Ed\"\n.*different 1\n$")
  message(FATAL_ERROR "the example edited something else:\n${differences}")
endif()
