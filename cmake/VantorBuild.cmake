# How every target of this project is compiled.

set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
if(NOT CMAKE_BUILD_TYPE AND NOT CMAKE_CONFIGURATION_TYPES)
  set(CMAKE_BUILD_TYPE Release CACHE STRING "Build type" FORCE)
endif()

add_library(vantor_warnings INTERFACE)
if(MSVC)
  target_compile_options(vantor_warnings INTERFACE /W4 $<$<BOOL:${VANTOR_WARNINGS_AS_ERRORS}>:/WX> /utf-8)
else()
  target_compile_options(vantor_warnings INTERFACE
    -Wall -Wextra -Wpedantic $<$<BOOL:${VANTOR_WARNINGS_AS_ERRORS}>:-Werror>)
endif()

# Sanitizers and coverage count only when everything that is linked together has them.
set(VANTOR_INSTRUMENTATION "")
if(VANTOR_SANITIZE)
  string(APPEND VANTOR_INSTRUMENTATION
    " -fsanitize=${VANTOR_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer")
endif()
if(VANTOR_FUZZ)
  string(APPEND VANTOR_INSTRUMENTATION " -fsanitize=fuzzer-no-link")
endif()
if(VANTOR_COVERAGE)
  string(APPEND VANTOR_INSTRUMENTATION " --coverage")
endif()
string(APPEND CMAKE_CXX_FLAGS "${VANTOR_INSTRUMENTATION}")

# Language, warnings and include root of one target.
function(vantor_configure_target target)
  set_target_properties(${target} PROPERTIES CXX_STANDARD 17 CXX_STANDARD_REQUIRED ON CXX_EXTENSIONS OFF)
  target_include_directories(${target} PRIVATE "${PROJECT_SOURCE_DIR}")
  target_link_libraries(${target} PRIVATE $<BUILD_INTERFACE:vantor_warnings>)
endfunction()

# For targets that need not be fast: no optimisation, which takes most of the time that compiling them takes.
function(vantor_compile_quickly target)
  if(NOT MSVC)
    target_compile_options(${target} PRIVATE -O0)
  endif()
endfunction()

# As `vantor_configure_target`, for a library that is installed; `name` is what follows Vantor:: in the package.
function(vantor_configure_library target name)
  vantor_configure_target(${target})
  set_target_properties(${target} PROPERTIES
    EXPORT_NAME ${name}
    POSITION_INDEPENDENT_CODE ON
    INSTALL_RPATH "$ORIGIN"  # the libraries find each other wherever they are installed
    VERSION ${PROJECT_VERSION}
    SOVERSION ${PROJECT_VERSION_MAJOR})
  target_compile_features(${target} PUBLIC cxx_std_17)
  if(MSVC)
    # std::auto_ptr is part of the exported interface; C++17 took it out of the standard.
    target_compile_definitions(${target} PUBLIC _HAS_AUTO_PTR_ETC=1)
  endif()
  target_include_directories(${target} PUBLIC
    $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}>
    $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}/vantor>)
endfunction()
