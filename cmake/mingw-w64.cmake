# Toolchain file: 64-bit Windows programs, by mingw-w64 with POSIX threads, tried with Wine. scripts/build-windows uses it.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)
set(vantor_triplet x86_64-w64-mingw32)

set(CMAKE_C_COMPILER ${vantor_triplet}-gcc-posix)
set(CMAKE_CXX_COMPILER ${vantor_triplet}-g++-posix)
set(CMAKE_RC_COMPILER ${vantor_triplet}-windres)

# Windows 7 and later. Consoles and pipes take UTF-16 and bytes; the C library's own printf knows no %zu.
set(CMAKE_CXX_FLAGS_INIT "-D_WIN32_WINNT=0x0601 -D__USE_MINGW_ANSI_STDIO=1")
set(CMAKE_C_FLAGS_INIT "${CMAKE_CXX_FLAGS_INIT}")

# CMAKE_PREFIX_PATH is searched as it is; the headers and libraries of the machine that builds are not.
set(CMAKE_FIND_ROOT_PATH /usr/${vantor_triplet} ${CMAKE_PREFIX_PATH})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# GNU ld takes minutes for a large test program, whose sections go into the tens of thousands; LLVM's a second.
find_program(vantor_lld NAMES ld.lld)
set(CMAKE_EXE_LINKER_FLAGS_INIT "-s")
if(vantor_lld)
  string(APPEND CMAKE_EXE_LINKER_FLAGS_INIT " -wrapper ${CMAKE_CURRENT_LIST_DIR}/link-with-lld")
endif()

find_program(CMAKE_CROSSCOMPILING_EMULATOR NAMES wine64 wine PATHS /usr/lib/wine)
