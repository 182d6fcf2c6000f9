#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# What the packages cfm-mgr and cfm-agent have installed, on a system bus started here: the commands
# of both units as the units' users, and one who may not take part. For a system of its own only, as
# root: the system bus is started, /etc/cfm/cfm.yaml and the server's store are written.
#
# usage: check-services.sh
set -euo pipefail

bus=unix:path=/run/dbus/system_bus_socket
store=/var/lib/cfm-mgr/store
log=$(mktemp -d)
# shellcheck source=tests/packages/background.sh
. "$(dirname "$0")/background.sh"
trap 'end_programs; rm -rf "$log"' EXIT
fail() {
  echo "check-services: $*" >&2
  sed 's/^/  /' "$log"/* >&2
  exit 1
}

setting() { sed -n "s/^$2=//p" "$(dpkg --listfiles "$1" | grep "/$1.service$")"; }

# The command of the unit $1, by the unit's user; the further arguments go to setpriv.
start() {
  local unit=$1 user command
  shift
  user=$(setting "$unit" User)
  command=$(setting "$unit" ExecStart)
  command=${command//%S//var/lib}
  command=${command//\$CFM_MGR_NETWORK/--wire --interface lo}
  read -r -a command <<<"$command"
  setpriv --reuid="$user" --regid="$user" --init-groups "$@" "${command[@]}" >"$log/$unit" 2>&1 &
  pids+=($!)
}

mkdir -p /run/dbus
install --directory --owner=cfm-mgr --mode=700 "$(dirname "$store")"
sed 's/port: eth0/port: lo/' /usr/share/doc/cfm-agent/examples/minimal.yaml >/etc/cfm/cfm.yaml
dbus-daemon --system --nofork --nopidfile >"$log/bus" 2>&1 &
pids+=($!)
await test -S "${bus#*=}" || fail "the system bus does not start"

start cfm-mgr --inh-caps=-all,+net_raw --ambient-caps=+net_raw --bounding-set=-all,+net_raw
start cfm-agent --inh-caps=-all --bounding-set=-all
query_as() { setpriv --reuid="$1" --regid="$(id -g "$1")" --init-groups cfm-mgr --query --bus "$bus"; }
provisioned() { query_as cfm-agent 2>"$log/query" | grep -q line-1; }
await provisioned || fail "the agent provisions nothing"
grep -q 'on the wire' "$log/cfm-mgr" || fail "the server does not run on the wire"
for stranger in nobody root; do
  if query_as "$stranger" >"$log/$stranger" 2>&1; then
    fail "the user $stranger may be a client"
  fi
done

kill "${pids[1]}"
wait "${pids[1]}" || fail "the server does not end as it should"
[ "$(stat --format=%U "$store")" = cfm-mgr ] || fail "the server keeps no store"
echo "the server and the agent find each other on the system bus, and strangers find neither"
