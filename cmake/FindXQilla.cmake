# Finds XQilla, the XPath 2 engine that plugs into Xerces-C++.
#
# Defines the imported target XQilla::XQilla, and XQilla_FOUND, XQilla_INCLUDE_DIR, XQilla_LIBRARY.
find_package(XercesC QUIET)
find_path(XQilla_INCLUDE_DIR xqilla/xqilla-dom3.hpp)
find_library(XQilla_LIBRARY NAMES xqilla xqilla23)
# Its headers name no version; its shared library does.
set(XQilla_VERSION "")
if(XQilla_LIBRARY)
  get_filename_component(xqilla_file "${XQilla_LIBRARY}" REALPATH)
  if(xqilla_file MATCHES "\\.so\\.([0-9.]+)$")
    set(XQilla_VERSION "${CMAKE_MATCH_1}")
  endif()
endif()
mark_as_advanced(XQilla_INCLUDE_DIR XQilla_LIBRARY)

include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(XQilla REQUIRED_VARS XQilla_LIBRARY XQilla_INCLUDE_DIR XercesC_FOUND)

if(XQilla_FOUND AND NOT TARGET XQilla::XQilla)
  add_library(XQilla::XQilla UNKNOWN IMPORTED)
  set_target_properties(XQilla::XQilla PROPERTIES
    IMPORTED_LOCATION "${XQilla_LIBRARY}"
    INTERFACE_INCLUDE_DIRECTORIES "${XQilla_INCLUDE_DIR}"
    INTERFACE_LINK_LIBRARIES XercesC::XercesC)
endif()
