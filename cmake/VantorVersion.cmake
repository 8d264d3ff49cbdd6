# What a version promises (docs/abi.md): until 1.0 a new minor version may change the ABI, from then on a new major version.
if(PROJECT_VERSION_MAJOR EQUAL 0)
  set(VANTOR_SOVERSION ${PROJECT_VERSION_MAJOR}.${PROJECT_VERSION_MINOR})
  set(VANTOR_PACKAGE_COMPATIBILITY SameMinorVersion)
else()
  set(VANTOR_SOVERSION ${PROJECT_VERSION_MAJOR})
  set(VANTOR_PACKAGE_COMPATIBILITY SameMajorVersion)
endif()
