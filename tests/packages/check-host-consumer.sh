#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# Builds the program of libcfm_mgr_client(3) as an outside one, found once with find_package and once
# with pkg-config, and has it provision a server, both on an installed development host.
#
# usage: check-host-consumer.sh SOURCE-DIR SCRATCH-DIR [BUILD-DIR]
#   BUILD-DIR   install this build tree first, and use that; otherwise what the system has
set -euo pipefail

source_dir=$1
scratch=$2
here=$source_dir/tests/packages
# shellcheck source=tests/packages/background.sh
. "$here/background.sh"

rm -rf "$scratch"
mkdir -p "$scratch"
cmake_options=()
server=cfm-mgr
if [ "$#" -gt 2 ]; then
  cmake --install "$3" --prefix "$scratch/prefix" >/dev/null
  library_dir=$(dirname "$(find "$scratch/prefix" -name libvorx.so.1)")
  cmake_options=(-DCMAKE_PREFIX_PATH="$scratch/prefix")
  export PKG_CONFIG_PATH=$library_dir/pkgconfig LD_LIBRARY_PATH=$library_dir
  server=$scratch/prefix/bin/cfm-mgr
fi

# shellcheck disable=SC2016 # those are no commands of the shell
sed -n '/^```cpp$/,/^```$/{//!p}' "$source_dir/docs/man/libcfm_mgr_client.3.md" \
  >"$scratch/provision.cc"
cmake -S "$here/consumer" -B "$scratch/found" -G Ninja "${cmake_options[@]}" \
  -DPROVISION_SOURCE="$scratch/provision.cc"
cmake --build "$scratch/found"

read -r -a cflags < <(pkg-config --cflags libcfm_mgr_client vorx_dbus)
read -r -a libs < <(pkg-config --libs libcfm_mgr_client vorx_dbus)
# The options of the file have to keep what a linker that saves on libraries would drop.
c++ -std=c++17 "${cflags[@]}" -Wl,--as-needed "$scratch/provision.cc" "${libs[@]}" \
  ${LD_LIBRARY_PATH:+-Wl,-rpath-link,"$LD_LIBRARY_PATH"} -o "$scratch/provision"

holds_the_domain() { "$server" --query 2>/dev/null | grep -q '"operator"'; }

start_bus "$scratch/bus.log"
for program in "$scratch/found/provision" "$scratch/provision"; do
  "$server" 2>"$scratch/server.log" &
  pids[1]=$!
  await grep -q 'serving as' "$scratch/server.log"
  "$program" 2>"$scratch/program.log" &
  pids[2]=$!
  await holds_the_domain || {
    echo "$program provisions nothing" >&2
    cat "$scratch/server.log" "$scratch/program.log" >&2
    exit 1
  }
  kill "${pids[1]}" "${pids[2]}"
  wait "${pids[1]}" || exit 1
  wait "${pids[2]}" || true # it knows no signals
  echo "$program provisions the server"
done
