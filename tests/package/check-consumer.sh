#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# Builds and runs an outside program, found once with find_package and once with pkg-config.
#
# usage: check-consumer.sh SOURCE-DIR SCRATCH-DIR [PREFIX]
#   PREFIX   where the libraries are installed; otherwise the system has them
set -euo pipefail

source_dir=$1
scratch=$2
consumer=$source_dir/tests/package/consumer
mkdir -p "$scratch"

cmake_options=()
link_options=()
if [ "$#" -gt 2 ]; then
  library_dir=$(dirname "$(find "$3" -name 'libcfm_mgr_client.so.1')")
  cmake_options=(-DCMAKE_PREFIX_PATH="$3")
  link_options=("-Wl,-rpath-link,$library_dir")
  export PKG_CONFIG_PATH=$library_dir/pkgconfig LD_LIBRARY_PATH=$library_dir
fi

cmake -S "$consumer" -B "$scratch/found" -G Ninja "${cmake_options[@]}"
cmake --build "$scratch/found"
"$scratch/found/consumer"

read -r -a cflags < <(pkg-config --cflags libcfm_mgr_client libcfm_mgr_client_server_pb)
read -r -a libs < <(pkg-config --libs libcfm_mgr_client libcfm_mgr_client_server_pb)
cc "${cflags[@]}" -c "$consumer/host.c" -o "$scratch/host.o"
c++ -std=c++17 "${cflags[@]}" "$consumer/consumer.cc" "$scratch/host.o" "${libs[@]}" -lzlog \
  "${link_options[@]}" -o "$scratch/consumer"
"$scratch/consumer"
