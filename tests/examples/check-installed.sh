#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# Builds the examples as a project of their own against what this build installs.
#
# usage: check-installed.sh SOURCE-DIR BUILD-DIR SCRATCH-DIR
set -euo pipefail

source_dir=$1
build_dir=$2
scratch=$3

rm -rf "$scratch"
mkdir -p "$scratch"
cmake --install "$build_dir" --prefix "$scratch/prefix" >"$scratch/install.log"
# Away from the project, so that nothing but the installed files can be found.
cp -r "$source_dir/examples" "$scratch/examples"
cmake -S "$scratch/examples" -B "$scratch/build" -G Ninja -DCMAKE_PREFIX_PATH="$scratch/prefix" \
  -DCMAKE_CXX_FLAGS='-Wall -Wextra -Werror'
cmake --build "$scratch/build"

# Each of them loads, and ends properly where there is no bus.
for name in provision event_loop handlers server_skeleton; do
  status=0
  VORX_BUS_ADDRESS=unix:path="$scratch/no-bus" "$scratch/build/$name" 2>"$scratch/$name.log" ||
    status=$?
  cat "$scratch/$name.log"
  [ "$status" -eq 1 ]
  grep -q "^$name: " "$scratch/$name.log"
done
