# The installed tree and its CMake package: find_package(VantorXMLBuilder), then link Vantor::XMLBuilder.
include(CMakePackageConfigHelpers)

set(package_dir "${CMAKE_INSTALL_LIBDIR}/cmake/VantorXMLBuilder")
set(header_dir "${CMAKE_INSTALL_INCLUDEDIR}/vantor")

install(TARGETS vantor_core vantor_xmlutils vantor_registers vantor_summary vantor_xmlbuilder vantor_edit
  vantor_json
  EXPORT VantorXMLBuilderTargets
  RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}"
  LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}"
  ARCHIVE DESTINATION "${CMAKE_INSTALL_LIBDIR}")
if(VANTOR_BUILD_TOOLS)
  install(TARGETS mxfxml RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}")
  install(FILES tools/mxfxml/completion/mxfxml.bash
    DESTINATION "${CMAKE_INSTALL_DATADIR}/bash-completion/completions" RENAME mxfxml)
  install(FILES tools/mxfxml/completion/_mxfxml DESTINATION "${CMAKE_INSTALL_DATADIR}/zsh/site-functions")
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
