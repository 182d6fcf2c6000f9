#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# Builds the examples as a project of their own against what is installed, and runs them: each where
# there is no bus, and the one with all handlers to its end, on the server that is installed.
#
# usage: check-examples.sh EXAMPLES-DIR SOURCE-DIR SCRATCH-DIR [PREFIX]
#   PREFIX   where everything is installed; otherwise the system has it
set -euo pipefail

examples=$1
source_dir=$2
scratch=$3
# shellcheck source=tests/packages/background.sh
. "$source_dir/tests/packages/background.sh"

mkdir -p "$scratch"
cmake_options=()
server=cfm-mgr
if [ "$#" -gt 3 ]; then
  cmake_options=(-DCMAKE_PREFIX_PATH="$4")
  server=$4/bin/cfm-mgr
fi
# Away from the project, so that nothing but the installed files can be found.
cp -r "$examples" "$scratch/examples"
cmake -S "$scratch/examples" -B "$scratch/build" -G Ninja "${cmake_options[@]}" \
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

start_bus "$scratch/bus.log"
"$server" --network "$source_dir/mgr/examples/line.yaml" 2>"$scratch/server.log" &
pids+=($!)
await grep -q 'serving as' "$scratch/server.log"
VORX_LOG_CONFIG=/dev/null timeout 60 "$scratch/build/handlers" lo >"$scratch/handlers.out" || {
  echo "handlers ends with status $?" >&2
  cat "$scratch/server.log" "$scratch/handlers.out" >&2
  exit 1
}
cat "$scratch/handlers.out"
