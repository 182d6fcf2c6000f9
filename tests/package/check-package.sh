#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# Builds and installs the two libraries alone, then builds and runs an outside program against the
# installed tree, found once with find_package and once with pkg-config.
#
# usage: check-package.sh SOURCE-DIR SCRATCH-DIR
set -euo pipefail

source_dir=$1
scratch=$2
prefix=$scratch/prefix

rm -rf "$scratch"
mkdir -p "$scratch"

cmake -S "$source_dir" -B "$scratch/build" -G Ninja -DCMAKE_BUILD_TYPE=Release \
  -DCMAKE_INSTALL_PREFIX="$prefix" -DCFM_BUILD_TESTING=OFF -DCFM_BUILD_DEVHOST=OFF
cmake --build "$scratch/build"
cmake --install "$scratch/build"

# Whatever the program uses has to come from the moved tree, not from where it was built.
moved=$scratch/moved
mv "$prefix" "$moved"
rm -rf "$scratch/build"
test -n "$(find "$moved" -name 'libcfm_mgr_client_server_pb.so.1')"
"$source_dir/tests/package/check-consumer.sh" "$source_dir" "$scratch" "$moved"

test -f "$moved/share/cfm_mgr_client/proto/cfm/client_server.proto"
