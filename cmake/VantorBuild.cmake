# How every target of this project is compiled. Nothing here reaches the targets of a project that includes this one.

if(PROJECT_IS_TOP_LEVEL)
  set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
  if(NOT CMAKE_BUILD_TYPE AND NOT CMAKE_CONFIGURATION_TYPES)
    set(CMAKE_BUILD_TYPE Release CACHE STRING "Build type" FORCE)
  endif()
endif()

# The standard of CMAKE_CXX_STANDARD, but C++17 at least.
set(VANTOR_CXX_STANDARD 17)
if(CMAKE_CXX_STANDARD AND NOT CMAKE_CXX_STANDARD EQUAL 98 AND CMAKE_CXX_STANDARD GREATER 17)
  set(VANTOR_CXX_STANDARD ${CMAKE_CXX_STANDARD})
endif()

add_library(vantor_warnings INTERFACE)
if(MSVC)
  target_compile_options(vantor_warnings INTERFACE /W4 $<$<BOOL:${VANTOR_WARNINGS_AS_ERRORS}>:/WX> /utf-8)
else()
  target_compile_options(vantor_warnings INTERFACE
    -Wall -Wextra -Wpedantic $<$<BOOL:${VANTOR_WARNINGS_AS_ERRORS}>:-Werror>)
  # Some C++ libraries deprecate a function that their own algorithms use, and newer compilers report that at our calls.
  include(CheckCXXSourceCompiles)
  set(CMAKE_REQUIRED_FLAGS "-std=c++17 -Werror=deprecated-declarations")
  check_cxx_source_compiles("
    #include <algorithm>
    void sort(int* from, int* to) { std::stable_sort(from, to); }
    int main() {}" VANTOR_LIBRARY_KEEPS_ITS_DEPRECATIONS)
  unset(CMAKE_REQUIRED_FLAGS)
  if(NOT VANTOR_LIBRARY_KEEPS_ITS_DEPRECATIONS)
    target_compile_options(vantor_warnings INTERFACE -Wno-deprecated-declarations)
  endif()
endif()

# Sanitizers and coverage count only when everything that is linked together has them.
set(VANTOR_INSTRUMENTATION "")
if(VANTOR_SANITIZE)
  list(APPEND VANTOR_INSTRUMENTATION
    -fsanitize=${VANTOR_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  if(CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
    list(APPEND VANTOR_INSTRUMENTATION
      "-fsanitize-ignorelist=${CMAKE_CURRENT_LIST_DIR}/sanitizer-ignore.txt")
  endif()
  # The libraries call their own copies of inline functions, not those of tests that have no sanitizer in them.
  if(VANTOR_TESTS_OF)
    add_link_options($<$<STREQUAL:$<TARGET_PROPERTY:TYPE>,SHARED_LIBRARY>:-Wl,-Bsymbolic-functions>)
  endif()
endif()
if(VANTOR_FUZZ)
  list(APPEND VANTOR_INSTRUMENTATION -fsanitize=fuzzer-no-link)
endif()
if(VANTOR_COVERAGE)
  list(APPEND VANTOR_INSTRUMENTATION --coverage)
endif()
add_library(vantor_instrumentation INTERFACE)
target_compile_options(vantor_instrumentation INTERFACE ${VANTOR_INSTRUMENTATION})
target_link_options(vantor_instrumentation INTERFACE ${VANTOR_INSTRUMENTATION})

# Language and warnings of a program that sees the libraries as others do.
function(vantor_configure_example target)
  set_target_properties(${target} PROPERTIES
    CXX_STANDARD ${VANTOR_CXX_STANDARD} CXX_STANDARD_REQUIRED ON CXX_EXTENSIONS OFF)
  target_link_libraries(${target} PRIVATE $<BUILD_INTERFACE:vantor_warnings> $<BUILD_INTERFACE:vantor_instrumentation>)
endfunction()

# The same for a target of this project: its sources include from the root of the repository, and the exported headers by
# their names.
function(vantor_configure_target target)
  vantor_configure_example(${target})
  target_include_directories(${target} PRIVATE "${PROJECT_SOURCE_DIR}" "${PROJECT_SOURCE_DIR}/include")
endfunction()

# For targets that need not be fast: no optimisation, which takes most of the time that compiling them takes. GCC collects
# its garbage only where it has more than 1 GiB of it.
function(vantor_compile_quickly target)
  if(NOT MSVC)
    target_compile_options(${target} PRIVATE -O0 $<$<CXX_COMPILER_ID:GNU>:--param=ggc-min-heapsize=1048576>)
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
    SOVERSION ${VANTOR_SOVERSION})  # docs/abi.md
  target_compile_features(${target} PUBLIC cxx_std_17)
  get_target_property(type ${target} TYPE)
  if(type STREQUAL "STATIC_LIBRARY")
    target_compile_definitions(${target} PUBLIC VANTOR_STATIC)
  endif()
  target_include_directories(${target} INTERFACE
    $<BUILD_INTERFACE:${VANTOR_HEADER_DIR}>
    $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)
  add_dependencies(${target} vantor_public_headers)
endfunction()

# For libraries whose headers have `std::auto_ptr`, their own or the XML parser's. From C++17 on, libc++ and MSVC have it
# only when asked; libstdc++ always has it.
set(VANTOR_AUTO_PTR_DEFINITIONS _LIBCPP_ENABLE_CXX17_REMOVED_AUTO_PTR _HAS_AUTO_PTR_ETC=1)
function(vantor_allow_auto_ptr target)
  target_compile_definitions(${target} PUBLIC ${VANTOR_AUTO_PTR_DEFINITIONS})
endfunction()
