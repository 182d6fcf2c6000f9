# SPDX-License-Identifier: Apache-2.0
# shellcheck shell=bash
# Sourced by scripts that need GoogleTest built as the rest is: for another architecture, or with
# another layout of the standard containers.

# Builds GoogleTest from Debian's sources and installs it into folder $1; the further arguments go to
# CMake.
install_googletest() {
  local prefix=$1
  shift
  if [ -f "$prefix/lib/libgmock.a" ]; then
    return
  fi
  cmake -S /usr/src/googletest -B "$prefix.googletest" -G Ninja -DCMAKE_BUILD_TYPE=Release \
    -DCMAKE_INSTALL_PREFIX="$prefix" -DCMAKE_INSTALL_LIBDIR=lib -DCMAKE_CXX_STANDARD=17 "$@"
  cmake --build "$prefix.googletest"
  cmake --install "$prefix.googletest"
}
