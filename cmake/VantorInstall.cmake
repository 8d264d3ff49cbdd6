# The installed tree and its CMake package: find_package(VantorXMLBuilder), then link Vantor::XMLBuilder.
include(CMakePackageConfigHelpers)

# What is not given to another component is for development.
set(CMAKE_INSTALL_DEFAULT_COMPONENT_NAME development)

set(package_dir "${CMAKE_INSTALL_LIBDIR}/cmake/VantorXMLBuilder")
set(header_dir "${CMAKE_INSTALL_INCLUDEDIR}/vantor")

install(TARGETS vantor_core vantor_xmlutils vantor_registers vantor_summary vantor_xmlbuilder vantor_edit
  vantor_json
  EXPORT VantorXMLBuilderTargets
  RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}" COMPONENT runtime
  LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}" COMPONENT runtime NAMELINK_COMPONENT development
  ARCHIVE DESTINATION "${CMAKE_INSTALL_LIBDIR}")
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

install(DIRECTORY include/ DESTINATION "${header_dir}" FILES_MATCHING PATTERN "*.h")
install(DIRECTORY Core XMLUtils Registers Summary Edit JSON DESTINATION "${header_dir}" FILES_MATCHING PATTERN "*.h")

configure_package_config_file(cmake/VantorXMLBuilderConfig.cmake.in
  "${PROJECT_BINARY_DIR}/VantorXMLBuilderConfig.cmake" INSTALL_DESTINATION "${package_dir}")
write_basic_package_version_file("${PROJECT_BINARY_DIR}/VantorXMLBuilderConfigVersion.cmake"
  COMPATIBILITY SameMinorVersion)
install(EXPORT VantorXMLBuilderTargets NAMESPACE Vantor:: DESTINATION "${package_dir}")
install(FILES
  "${PROJECT_BINARY_DIR}/VantorXMLBuilderConfig.cmake"
  "${PROJECT_BINARY_DIR}/VantorXMLBuilderConfigVersion.cmake"
  DESTINATION "${package_dir}")
if(VANTOR_WITH_XQILLA)
  install(FILES cmake/FindXQilla.cmake DESTINATION "${package_dir}")
endif()

if(VANTOR_DEBIAN_PACKAGES)
  include(VantorPackages)
else()
  install(FILES LICENSE NOTICE DESTINATION "${CMAKE_INSTALL_DOCDIR}" COMPONENT runtime)
endif()
