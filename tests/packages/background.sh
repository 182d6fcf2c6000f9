# SPDX-License-Identifier: Apache-2.0
# shellcheck shell=bash
# Sourced by checks that start programs: each is ended with the check.

pids=()
end_programs() {
  local pid
  for pid in "${pids[@]}"; do
    kill "$pid" 2>/dev/null || true
    wait "$pid" 2>/dev/null || true
  done
}

# Waits until a command succeeds; fails when it does not in time.
limit=20 # seconds
await() {
  local deadline=$((SECONDS + limit))
  until "$@"; do
    [ "$SECONDS" -lt "$deadline" ] || return 1
    sleep 0.05
  done
}

# A bus for all that is started from here on; what it says goes into the file $1.
start_bus() {
  bus_socket=$(mktemp -u /tmp/cfm-bus-XXXXXX) # short enough, wherever the scratch folder is
  trap 'end_programs; rm -f "$bus_socket"' EXIT
  export VORX_BUS_ADDRESS=unix:path=$bus_socket
  dbus-daemon --session --nofork --nopidfile --address="$VORX_BUS_ADDRESS" 2>"$1" &
  pids+=($!)
  await test -S "$bus_socket"
}
