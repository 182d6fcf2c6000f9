# SPDX-License-Identifier: Apache-2.0
# What the toolchains of this folder have in common: a cross compiler of Debian, and the packages of
# the other architecture unpacked into the folder CFM_FOREIGN_ROOT (scripts/foreign.sh fills it).
#
# Programs are linked to the loader and the libraries that came with the compiler, so that they run
# from the build folder without an installation of that architecture.
#
# The including file sets:
#   foreign_triplet    prefix of the compiler, and the folder under /usr of what it comes with
#   foreign_multiarch  Debian's name for the architecture's library folder
#   foreign_loader     file name of the dynamic loader
set(CMAKE_SYSTEM_NAME Linux)
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES CFM_FOREIGN_ROOT)

set(CMAKE_C_COMPILER ${foreign_triplet}-gcc)
set(CMAKE_CXX_COMPILER ${foreign_triplet}-g++)
set(CMAKE_LIBRARY_ARCHITECTURE ${foreign_multiarch})

set(CMAKE_FIND_ROOT_PATH "${CFM_FOREIGN_ROOT}" /usr/${foreign_triplet})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

set(CMAKE_EXE_LINKER_FLAGS_INIT "-Wl,--dynamic-linker=/usr/${foreign_triplet}/lib/${foreign_loader} \
-Wl,--disable-new-dtags -Wl,-rpath,/usr/${foreign_triplet}/lib")
