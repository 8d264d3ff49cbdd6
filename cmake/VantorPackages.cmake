# Debian packages of what is installed, a package for each component: cpack -G DEB. See scripts/package.
if(VANTOR_HAS_XQILLA)  # no package of current releases has it for these to depend on
  message(FATAL_ERROR "Debian packages are made without XQilla: set VANTOR_WITH_XQILLA=OFF")
endif()
set(VANTOR_MAINTAINER "Vantor XMLBuilder authors <vantor-xmlbuilder@lists.invalid>" CACHE STRING
  "Who answers for the packages, as the field Maintainer takes it")
set(runtime_package libvantor${VANTOR_SOVERSION})
set(development_package libvantor-dev)
set(tool_package mxfxml)
set(CPACK_COMPONENTS_ALL runtime development)
if(VANTOR_BUILD_TOOLS)
  list(APPEND CPACK_COMPONENTS_ALL tool)
endif()

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME vantor-xmlbuilder)
set(CPACK_PACKAGE_CONTACT "${VANTOR_MAINTAINER}")
set(CPACK_PACKAGING_INSTALL_PREFIX "${CMAKE_INSTALL_PREFIX}")
set(CPACK_STRIP_FILES ON)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_ENABLE_COMPONENT_DEPENDS ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# The libraries of this build, which no installed package has.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS "${PROJECT_BINARY_DIR}")

set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME ${runtime_package})
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION libs)
# Programs linked to these libraries depend on this version or later; the trigger runs ldconfig.
set(shlibs "")
foreach(library core summary xmlutils registers xmlbuilder edit json)
  get_target_property(soversion vantor_${library} SOVERSION)
  string(APPEND shlibs "libvantor_${library} ${soversion} ${runtime_package} (>= ${PROJECT_VERSION})\n")
endforeach()
file(WRITE "${PROJECT_BINARY_DIR}/package/shlibs" "${shlibs}")
file(WRITE "${PROJECT_BINARY_DIR}/package/triggers" "activate-noawait ldconfig\n")
set(CPACK_DEBIAN_RUNTIME_PACKAGE_CONTROL_EXTRA
  "${PROJECT_BINARY_DIR}/package/shlibs" "${PROJECT_BINARY_DIR}/package/triggers")
set(CPACK_DEBIAN_RUNTIME_DESCRIPTION "MXF header metadata to XML and back: libraries
Reads and writes the header metadata of MXF files (SMPTE ST 377-1), turns them
into XML or JSON and back with nothing lost, and edits them in place.
.
This package has the shared libraries, built without XQilla.")

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME ${development_package})
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS libxerces-c-dev)
set(CPACK_DEBIAN_DEVELOPMENT_DESCRIPTION "MXF header metadata to XML and back: files for development
Headers, links and the CMake package of the libraries that read and write the
header metadata of MXF files (SMPTE ST 377-1), turn them into XML or JSON and
back, and edit them in place.")

set(CPACK_DEBIAN_TOOL_PACKAGE_NAME ${tool_package})
set(CPACK_DEBIAN_TOOL_PACKAGE_SECTION video)
set(CPACK_DEBIAN_TOOL_DESCRIPTION "MXF header metadata to XML and back: command
The command mxfxml shows, checks, compares and edits the header metadata of MXF
files (SMPTE ST 377-1), and turns them into XML or JSON and back with nothing
lost.")

# What every package has to say about itself.
file(READ "${PROJECT_SOURCE_DIR}/NOTICE" notice)
file(WRITE "${PROJECT_BINARY_DIR}/package/copyright" "${notice}\n\nApache License, Version 2.0\n\n"
  "On Debian systems, its text is in /usr/share/common-licenses/Apache-2.0.\n")
# Of the release, not of the build, so that two builds make the same bytes.
file(STRINGS "${PROJECT_SOURCE_DIR}/CHANGELOG.md" heading REGEX "^## \\[${PROJECT_VERSION}\\]")
string(REGEX MATCH "[0-9]+-[0-9]+-[0-9]+" day "${heading}")
if(day STREQUAL "")
  message(FATAL_ERROR "CHANGELOG.md has no heading with a date for ${PROJECT_VERSION}; packages take theirs from it")
endif()
execute_process(COMMAND date --utc --rfc-email "--date=${day}"
  OUTPUT_VARIABLE day OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
file(WRITE "${PROJECT_BINARY_DIR}/package/changelog.Debian"
  "vantor-xmlbuilder (${PROJECT_VERSION}-${CPACK_DEBIAN_PACKAGE_RELEASE}) unstable; urgency=medium\n\n"
  "  * Release ${PROJECT_VERSION}.\n\n -- ${VANTOR_MAINTAINER}  ${day}\n")
execute_process(COMMAND gzip --best --no-name --force --keep changelog.Debian
  WORKING_DIRECTORY "${PROJECT_BINARY_DIR}/package" COMMAND_ERROR_IS_FATAL ANY)
foreach(component IN LISTS CPACK_COMPONENTS_ALL)
  install(FILES "${PROJECT_BINARY_DIR}/package/copyright" "${PROJECT_BINARY_DIR}/package/changelog.Debian.gz"
    DESTINATION "${CMAKE_INSTALL_DATADIR}/doc/${${component}_package}" COMPONENT ${component})
endforeach()
install(CODE "
  file(GLOB pages \"\$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}/${CMAKE_INSTALL_MANDIR}/man1/*.1\")
  foreach(page IN LISTS pages)
    execute_process(COMMAND gzip --best --no-name --force \"\${page}\" COMMAND_ERROR_IS_FATAL ANY)
  endforeach()" COMPONENT tool)

include(CPack)
cpack_add_component(runtime)
cpack_add_component(development DEPENDS runtime)
cpack_add_component(tool DEPENDS runtime)
