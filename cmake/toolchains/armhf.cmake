# SPDX-License-Identifier: Apache-2.0
# 32-bit ARM: plain char has no sign.
set(CMAKE_SYSTEM_PROCESSOR armv7l)
set(foreign_triplet arm-linux-gnueabihf)
set(foreign_multiarch arm-linux-gnueabihf)
set(foreign_loader ld-linux-armhf.so.3)
include("${CMAKE_CURRENT_LIST_DIR}/debian-cross.cmake")
