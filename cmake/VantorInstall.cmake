# The installed tree and its CMake package: find_package(VantorXMLBuilder), then link Vantor::XMLBuilder; and a
# pkg-config file for each library.
include(CMakePackageConfigHelpers)

# What is not given to another component is for development.
set(CMAKE_INSTALL_DEFAULT_COMPONENT_NAME development)

set(package_dir "${CMAKE_INSTALL_LIBDIR}/cmake/VantorXMLBuilder")
set(libraries core summary xmlutils registers xmlbuilder edit json)
set(targets ${libraries})
list(TRANSFORM targets PREPEND vantor_)

install(TARGETS ${targets}
  EXPORT VantorXMLBuilderTargets
  RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}" COMPONENT runtime
  LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}" COMPONENT runtime NAMELINK_COMPONENT development
  ARCHIVE DESTINATION "${CMAKE_INSTALL_LIBDIR}" COMPONENT development)
if(VANTOR_BUILD_TOOLS)
  # Debian's zsh reads the functions of packages in a folder of its own.
  set(zsh_folder "${CMAKE_INSTALL_DATADIR}/zsh/site-functions")
  if(VANTOR_DEBIAN_PACKAGES)
    set(zsh_folder "${CMAKE_INSTALL_DATADIR}/zsh/vendor-completions")
  endif()
  install(TARGETS mxfxml RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}" COMPONENT tool)
  install(FILES tools/mxfxml/completion/mxfxml.bash
    DESTINATION "${CMAKE_INSTALL_DATADIR}/bash-completion/completions" RENAME mxfxml COMPONENT tool)
  install(FILES tools/mxfxml/completion/_mxfxml DESTINATION "${zsh_folder}" COMPONENT tool)
endif()

install(DIRECTORY "${VANTOR_HEADER_DIR}/" DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}" COMPONENT development)

# Shared libraries know their own dependencies; a program that links static ones links XQilla itself.
set(VANTOR_PACKAGE_NEEDS_XQILLA FALSE)
if(VANTOR_HAS_XQILLA AND NOT BUILD_SHARED_LIBS)
  set(VANTOR_PACKAGE_NEEDS_XQILLA TRUE)
  install(FILES cmake/FindXQilla.cmake DESTINATION "${package_dir}" COMPONENT development)
endif()
configure_package_config_file(cmake/VantorXMLBuilderConfig.cmake.in
  "${PROJECT_BINARY_DIR}/VantorXMLBuilderConfig.cmake" INSTALL_DESTINATION "${package_dir}")
write_basic_package_version_file("${PROJECT_BINARY_DIR}/VantorXMLBuilderConfigVersion.cmake"
  COMPATIBILITY ${VANTOR_PACKAGE_COMPATIBILITY})
install(EXPORT VantorXMLBuilderTargets NAMESPACE Vantor:: DESTINATION "${package_dir}" COMPONENT development)
install(FILES
  "${PROJECT_BINARY_DIR}/VantorXMLBuilderConfig.cmake"
  "${PROJECT_BINARY_DIR}/VantorXMLBuilderConfigVersion.cmake"
  DESTINATION "${package_dir}" COMPONENT development)

# The way from a pkg-config file to the prefix, which may move.
file(RELATIVE_PATH VANTOR_PREFIX_FROM_PC "/${CMAKE_INSTALL_LIBDIR}/pkgconfig" "/")
string(REGEX REPLACE "/$" "" VANTOR_PREFIX_FROM_PC "${VANTOR_PREFIX_FROM_PC}")
list(TRANSFORM VANTOR_AUTO_PTR_DEFINITIONS PREPEND -D OUTPUT_VARIABLE auto_ptr_flags)
list(JOIN auto_ptr_flags " " auto_ptr_flags)
function(vantor_install_pkgconfig library description)
  cmake_parse_arguments(pc "" "CFLAGS" "REQUIRES;PRIVATE;LIBS" ${ARGN})
  # Programs link what a static library needs inside; a shared one names it itself.
  if(NOT BUILD_SHARED_LIBS)
    list(APPEND pc_REQUIRES ${pc_PRIVATE})
    set(pc_PRIVATE "")
  endif()
  list(JOIN pc_REQUIRES ", " pc_REQUIRES)
  if(pc_PRIVATE)
    list(JOIN pc_PRIVATE ", " pc_PRIVATE)
    string(APPEND pc_REQUIRES "\nRequires.private: ${pc_PRIVATE}")
  endif()
  if(NOT BUILD_SHARED_LIBS)
    string(APPEND pc_CFLAGS " -DVANTOR_STATIC")
    list(JOIN pc_LIBS " " pc_static_libs)
  endif()
  configure_file(cmake/library.pc.in "${PROJECT_BINARY_DIR}/pkgconfig/vantor-${library}.pc" @ONLY)
  install(FILES "${PROJECT_BINARY_DIR}/pkgconfig/vantor-${library}.pc"
    DESTINATION "${CMAKE_INSTALL_LIBDIR}/pkgconfig" COMPONENT development)
endfunction()
set(xqilla_libs "")
if(VANTOR_HAS_XQILLA)
  set(xqilla_libs -lxqilla)
endif()
vantor_install_pkgconfig(core "Header metadata of MXF files: KLV, values, the dictionary and sets"
  CFLAGS -pthread LIBS -pthread)
vantor_install_pkgconfig(summary "What people ask of an MXF file first" REQUIRES vantor-core)
vantor_install_pkgconfig(xmlutils "XML documents of header metadata: start-up, loading, saving"
  CFLAGS "${auto_ptr_flags}" REQUIRES vantor-core xerces-c LIBS ${xqilla_libs})
vantor_install_pkgconfig(registers "The registers of SMPTE, and dictionary files, as definitions"
  REQUIRES vantor-core PRIVATE vantor-xmlutils)
vantor_install_pkgconfig(xmlbuilder "Header metadata of MXF files to XML and back"
  CFLAGS "-I\${includedir}/${VANTOR_NAMES_DIR}" REQUIRES vantor-core vantor-xmlutils)
vantor_install_pkgconfig(edit "Edits the header metadata of MXF files" REQUIRES vantor-xmlbuilder)
vantor_install_pkgconfig(json "Header metadata of MXF files to JSON and back" REQUIRES vantor-core)

if(VANTOR_DEBIAN_PACKAGES)
  include(VantorPackages)
else()
  install(FILES LICENSE NOTICE DESTINATION "${CMAKE_INSTALL_DOCDIR}" COMPONENT runtime)
endif()
