# SPDX-License-Identifier: Apache-2.0
# 32-bit x86.
set(CMAKE_SYSTEM_PROCESSOR i686)
set(foreign_triplet i686-linux-gnu)
set(foreign_multiarch i386-linux-gnu)
set(foreign_loader ld-linux.so.2)
include("${CMAKE_CURRENT_LIST_DIR}/debian-cross.cmake")
