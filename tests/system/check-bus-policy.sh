#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# The installed policy on a bus of the system's type: who may be the server, who may be a client.
# Users that every Debian has stand in for those of an installation. Status 77: skipped.
#
# usage: check-bus-policy.sh SOURCE-DIR BUILD-DIR
set -euo pipefail

source=$1
build=$2
server_user=daemon
client_user=games # alone in the group of the same name, whose members may be clients
outsider=nobody

skip() {
  echo "skipped: $*"
  exit 77
}
fail() {
  echo "$*" >&2
  for said in "$scratch"/*.said; do
    sed "s#^#$(basename "$said"): #" "$said" >&2
  done
  exit 1
}

[ "$(id -u)" -eq 0 ] || skip "other users are for root only"
command -v setpriv >/dev/null || skip "there is no setpriv"
for user in "$server_user" "$client_user" "$outsider"; do
  id "$user" >/dev/null 2>&1 || skip "there is no user $user"
done

scratch=$(mktemp -d)
chmod 755 "$scratch"
pids=()
clean_up() {
  for pid in "${pids[@]}"; do
    kill "$pid" 2>/dev/null || true
    wait "$pid" 2>/dev/null || true
  done
  rm -rf "$scratch"
}
trap clean_up EXIT

# A copy that every user may reach, wherever the build tree is.
prefix=$scratch/prefix
cmake --install "$build" --prefix "$prefix" >/dev/null
for file in lib/systemd/system/cfm-mgr.service lib/sysusers.d/cfm-mgr.conf; do
  [ -f "$prefix/$file" ] || fail "$file is not installed"
done

sed -e "s/policy user=\"[^\"]*\"/policy user=\"$server_user\"/" \
  -e "s/policy group=\"[^\"]*\"/policy group=\"$client_user\"/" \
  "$prefix/share/dbus-1/system.d/cfm-mgr.conf" >"$scratch/policy.conf"
cat >"$scratch/bus.conf" <<END
<!DOCTYPE busconfig PUBLIC "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig>
  <type>system</type>
  <listen>unix:path=$scratch/bus</listen>
  <auth>EXTERNAL</auth>
  <policy context="default">
    <allow user="*"/>
    <deny own="*"/>
    <deny send_type="method_call"/>
    <allow send_type="signal"/>
    <allow send_requested_reply="true" send_type="method_return"/>
    <allow send_requested_reply="true" send_type="error"/>
    <allow receive_type="method_call"/>
    <allow receive_type="method_return"/>
    <allow receive_type="error"/>
    <allow receive_type="signal"/>
    <allow send_destination="org.freedesktop.DBus" send_interface="org.freedesktop.DBus"/>
  </policy>
  <include>$scratch/policy.conf</include>
</busconfig>
END
bus=unix:path=$scratch/bus
dbus-daemon --config-file="$scratch/bus.conf" --nofork 2>"$scratch/bus.said" &
pids+=($!)

as() {
  local user=$1
  shift
  setpriv --reuid="$user" --regid="$(id -g "$user")" --clear-groups "$@"
}
# Nothing but what the unit gives the server.
as_server() {
  as "$server_user" --inh-caps=-all,+net_raw --ambient-caps=+net_raw \
    --bounding-set=-all,+net_raw --no-new-privs "$@"
}
await() {
  local deadline=$((SECONDS + 20))
  until "$@"; do
    [ "$SECONDS" -lt "$deadline" ] || return 1
    sleep 0.05
  done
}

await [ -S "$scratch/bus" ] || fail "the bus does not come up"
as_server true 2>"$scratch/setpriv.said" || skip "the capability for packets cannot be given"

# Nobody but the service's user may be the server, not even while there is none.
for user in "$outsider" "$client_user" root; do
  status=0
  as "$user" timeout 10 "$prefix/bin/cfm-mgr" --bus "$bus" >"$scratch/$user.said" 2>&1 || status=$?
  [ "$status" -eq 1 ] || fail "user $user: the server ended with status $status, expected 1"
  grep -q 'does not give out the name vorx.cfm-mgr: its policy does not allow this user' \
    "$scratch/$user.said" ||
    fail "user $user was refused for another reason"
done

install -d -o "$server_user" -m 700 "$scratch/state"
as_server "$prefix/bin/cfm-mgr" --bus "$bus" --store "$scratch/state/store" --wire --interface lo \
  >"$scratch/server.said" 2>&1 &
pids+=($!)
await grep -q 'on the wire' "$scratch/server.said" || fail "the server does not start"

# A client provisions an endpoint, hears its status, and gets the configuration back.
sed 's/port: eth0/port: lo/' "$source/agent/examples/minimal.yaml" >"$scratch/client.yaml"
as "$client_user" "$prefix/bin/cfm-agent" --bus "$bus" --config "$scratch/client.yaml" \
  --execute show --execute 'loopback example line-1 1 2' >"$scratch/agent.said" 2>&1 && fail "no endpoint 2 answers"
grep -q '0 of 1 ok' "$scratch/agent.said" || fail "the server's status did not arrive"
grep -q 'error code 4' "$scratch/agent.said" || fail "the server did not answer the agent's request"
as "$client_user" "$prefix/bin/cfm-mgr" --bus "$bus" --query >"$scratch/query.said" 2>&1 ||
  fail "a client cannot ask"
grep -q 'line-1' "$scratch/query.said" || fail "the endpoint's association is not there"

# Others cannot join as clients, and what they send by other means does not arrive.
as "$outsider" "$prefix/bin/cfm-mgr" --bus "$bus" --query >"$scratch/query-$outsider.said" 2>&1 &&
  fail "an outsider can ask"
send() {
  as "$1" dbus-send --bus="$bus" --dest=vorx.cfm-mgr --type=signal /vorx "vorx.Messaging.$2"
}
send "$outsider" Signal
send "$client_user" Event
await grep -q 'no signal or event' "$scratch/server.said" ||
  fail "what a client sends does not arrive"
grep -q "'vorx.Messaging.Signal'" "$scratch/server.said" && fail "what an outsider sends arrives"

[ "$(stat -c %U "$scratch/state/store")" = "$server_user" ] || fail "the store is not the server's"
echo "the policy holds"
