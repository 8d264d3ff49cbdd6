# Builds the consumer project with this one inside it, and runs it; with THREAD_TESTS, names of sources in SOURCE_DIR,
# also these tests, and everything with ThreadSanitizer.
#   cmake -D SOURCE_DIR=... -D SCRATCH_DIR=... -D COMPILER=... -D LAUNCHER=... -D FLAGS=... [-D STANDARD=20]
#     [-D "THREAD_TESTS=..."] -P RunGuest.cmake
cmake_minimum_required(VERSION 3.21)
include("${CMAKE_CURRENT_LIST_DIR}/Run.cmake")

if(THREAD_TESTS)
  string(APPEND FLAGS " -g1 -fsanitize=thread -fno-omit-frame-pointer")
endif()
set(standard "")
if(STANDARD)
  set(standard "-DCMAKE_CXX_STANDARD=${STANDARD}")
endif()
run("${CMAKE_COMMAND}" -S "${CMAKE_CURRENT_LIST_DIR}" -B "${SCRATCH_DIR}" -G Ninja "-DVANTOR_SOURCE_DIR=${SOURCE_DIR}"
  "-DVANTOR_THREAD_TESTS=${THREAD_TESTS}"
  ${standard} "-DCMAKE_BUILD_TYPE=None" "-DCMAKE_CXX_COMPILER=${COMPILER}" "-DCMAKE_CXX_COMPILER_LAUNCHER=${LAUNCHER}"
  "-DCMAKE_CXX_FLAGS=${FLAGS} -O0" "-DCMAKE_UNITY_BUILD=ON" "-DCMAKE_UNITY_BUILD_BATCH_SIZE=16")
run("${CMAKE_COMMAND}" --build "${SCRATCH_DIR}")
run("${SCRATCH_DIR}/consumer")
run("${SCRATCH_DIR}/print_summary" "${CMAKE_CURRENT_LIST_DIR}/../data/bmx-as02-as02b.mxf")
if(THREAD_TESTS)
  set(ENV{TSAN_OPTIONS} "halt_on_error=1:second_deadlock_stack=1")
  run("${SCRATCH_DIR}/thread_tests" --gtest_brief=1)
endif()
# Static libraries, of which nothing is installed.
file(GLOB_RECURSE shared "${SCRATCH_DIR}/*vantor_*.so")
run("${CMAKE_COMMAND}" --install "${SCRATCH_DIR}" --prefix "${SCRATCH_DIR}/prefix")
file(GLOB_RECURSE installed "${SCRATCH_DIR}/prefix/*")
if(shared OR installed)
  message(FATAL_ERROR "shared libraries: ${shared}; installed: ${installed}")
endif()
