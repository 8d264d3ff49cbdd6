# The headers of the API as others include them, <vantor/Core/KLV/Key.h>: a copy below VANTOR_HEADER_DIR, which is what is
# installed and what a project that includes this one sees. In the copy, headers include each other by these names, so
# that no other name, such as Core/, gets onto the include path of a consumer. The exported headers also have their own
# names, in a folder that holds nothing else.
include(VantorPublicHeaders)
set(VANTOR_HEADER_DIR "${PROJECT_BINARY_DIR}/headers")
set(VANTOR_NAMES_DIR vantor/by-name)

set(sources ${VANTOR_PUBLIC_HEADERS})
list(TRANSFORM sources PREPEND "${PROJECT_SOURCE_DIR}/")
set(script "${PROJECT_SOURCE_DIR}/cmake/CopyPublicHeaders.cmake")
set(stamp "${PROJECT_BINARY_DIR}/headers.stamp")
add_custom_command(OUTPUT "${stamp}"
  COMMAND "${CMAKE_COMMAND}" -D "ROOT=${PROJECT_SOURCE_DIR}" -D "FOLDER=${VANTOR_HEADER_DIR}"
    -D "NAMES=${VANTOR_NAMES_DIR}" -P "${script}"
  COMMAND "${CMAKE_COMMAND}" -E touch "${stamp}"
  DEPENDS ${sources} "${script}" "${PROJECT_SOURCE_DIR}/cmake/VantorPublicHeaders.cmake"
  COMMENT "Copying the headers of the API" VERBATIM)
add_custom_target(vantor_public_headers ALL DEPENDS "${stamp}")
