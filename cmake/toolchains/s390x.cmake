# SPDX-License-Identifier: Apache-2.0
# IBM Z: 64-bit, big-endian.
set(CMAKE_SYSTEM_PROCESSOR s390x)
set(foreign_triplet s390x-linux-gnu)
set(foreign_multiarch s390x-linux-gnu)
set(foreign_loader ld64.so.1)
include("${CMAKE_CURRENT_LIST_DIR}/debian-cross.cmake")
