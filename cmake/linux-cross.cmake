# Toolchain file: programs for Linux on another processor, $VANTOR_TRIPLET, run by qemu-user. scripts/build-foreign uses it.
set(CMAKE_SYSTEM_NAME Linux)
set(vantor_triplet "$ENV{VANTOR_TRIPLET}")
string(REGEX REPLACE "-.*" "" CMAKE_SYSTEM_PROCESSOR "${vantor_triplet}")

set(CMAKE_C_COMPILER ${vantor_triplet}-gcc)
set(CMAKE_CXX_COMPILER ${vantor_triplet}-g++)

# CMAKE_PREFIX_PATH is searched as it is; the headers and libraries of the machine that builds are not.
set(CMAKE_FIND_ROOT_PATH /usr/${vantor_triplet} ${CMAKE_PREFIX_PATH})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

find_program(vantor_qemu NAMES qemu-${CMAKE_SYSTEM_PROCESSOR}-static qemu-${CMAKE_SYSTEM_PROCESSOR})
set(CMAKE_CROSSCOMPILING_EMULATOR ${vantor_qemu} -L /usr/${vantor_triplet})
