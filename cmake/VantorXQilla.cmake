# Sets VANTOR_HAS_XQILLA and the text VANTOR_XQILLA_STATE from VANTOR_WITH_XQILLA: AUTO, ON or OFF.

# Whether a program with XQilla builds: its library may be made for another C++ library, its headers for an older standard.
function(vantor_try_xqilla result)
  include(CheckCXXSourceCompiles)
  set(CMAKE_CXX_STANDARD ${VANTOR_CXX_STANDARD})
  set(CMAKE_CXX_STANDARD_REQUIRED ON)
  set(CMAKE_REQUIRED_LIBRARIES XQilla::XQilla XercesC::XercesC)
  set(CMAKE_REQUIRED_DEFINITIONS ${VANTOR_AUTO_PTR_DEFINITIONS})
  list(TRANSFORM CMAKE_REQUIRED_DEFINITIONS PREPEND -D)
  set(CMAKE_REQUIRED_QUIET ON)
  check_cxx_source_compiles("
    #include <xqilla/exceptions/XQException.hpp>
    #include <xqilla/exceptions/XQillaException.hpp>
    #include <xqilla/utils/XPath2Utils.hpp>
    #include <xqilla/utils/XQillaPlatformUtils.hpp>
    #include <xqilla/xqilla-dom3.hpp>
    int main() {
      XQillaPlatformUtils::initialize();
      return XPath2Utils::containsString(std::vector<const XMLCh*>(), u\"\") ? 1 : 0;  // a type of the C++ library
    }" VANTOR_XQILLA_COMPILES)
  set(${result} ${VANTOR_XQILLA_COMPILES} PARENT_SCOPE)
endfunction()

set(VANTOR_HAS_XQILLA OFF)
set(VANTOR_XQILLA_STATE "without")
set(reason "not asked for")
if(VANTOR_WITH_XQILLA STREQUAL "AUTO")
  find_package(XQilla QUIET)
  set(reason "not found")
  if(XQilla_FOUND)
    vantor_try_xqilla(VANTOR_HAS_XQILLA)
    set(reason "found, but made for another compiler or C++ library")
  endif()
elseif(VANTOR_WITH_XQILLA)
  find_package(XQilla REQUIRED)
  set(VANTOR_HAS_XQILLA ON)
endif()
if(VANTOR_HAS_XQILLA)
  set(VANTOR_XQILLA_STATE "${XQilla_VERSION}")
  if(VANTOR_XQILLA_STATE STREQUAL "")
    set(VANTOR_XQILLA_STATE "unknown")
  endif()
  message(STATUS "XQilla: ${VANTOR_XQILLA_STATE}")
else()
  message(NOTICE "XQilla: ${reason}; documents then evaluate no XPath 2, and look-ups that fail have other messages")
endif()
