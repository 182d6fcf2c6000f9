#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# The services of the packages cfm-mgr and cfm-agent in a system that systemd has booted: they start, find
# each other, have no privilege that they need not, come back when they are killed, and end when they
# are told to. For a system of its own only, as root: /etc/cfm/cfm.yaml is written, and a user is added.
#
# usage: check-booted.sh
set -euo pipefail

# shellcheck source=tests/packages/background.sh
. "$(dirname "$0")/background.sh"
fail() {
  echo "check-booted: $*" >&2
  systemctl status --no-pager --full --lines=30 dbus cfm-mgr cfm-agent >&2
  exit 1
}

property() { systemctl show --property="$2" --value "$1"; }
is_active() { [ "$(property "$1" ActiveState)" = active ]; }

# As somebody who has become a member of the group asks.
export VORX_BUS_ADDRESS=unix:path=/run/dbus/system_bus_socket
useradd somebody
as_somebody() { runuser --user somebody -- "$@"; }
server_tree() { as_somebody cfm-mgr --query 2>/dev/null; }
holds_the_endpoint() { server_tree | grep -q 'mep 1:'; }

await is_active cfm-mgr || fail "the server does not start with the system"
! is_active cfm-agent || fail "the agent starts without having been told to"
sed 's/port: eth0/port: lo/' /usr/share/doc/cfm-agent/examples/minimal.yaml >/etc/cfm/cfm.yaml
systemctl start cfm-agent
! server_tree || fail "somebody who is no member of the group is a client"
usermod -aG cfm somebody
await holds_the_endpoint || fail "the agent does not provision the server"
as_somebody cfm-agent --config /etc/cfm/cfm.yaml --execute show | grep -q line-1 ||
  fail "the agent tells a member of the group nothing"
echo "both services are active, and the server is provisioned"

capabilities_of() { awk '/^CapEff:/ { print $2 }' "/proc/$(property "$1" MainPID)/status"; }
net_raw=0000000000002000
[ "$(capabilities_of cfm-mgr)" = "$net_raw" ] || fail "the server has not exactly CAP_NET_RAW"
[ "$(capabilities_of cfm-agent)" = 0000000000000000 ] || fail "the agent has capabilities"
for unit in cfm-mgr cfm-agent; do
  [ "$(stat --format=%U "/proc/$(property "$unit" MainPID)")" = "$unit" ] ||
    fail "$unit does not run as its user"
done
echo "the server has CAP_NET_RAW alone, the agent nothing"

was_restarted() { [ "$(property "$1" NRestarts)" -gt 0 ] && is_active "$1"; }
for unit in cfm-mgr cfm-agent; do
  systemctl kill --signal=KILL "$unit"
  await was_restarted "$unit" || fail "$unit does not come back when it was killed"
  await holds_the_endpoint || fail "the server is not provisioned after $unit was killed"
  echo "$unit was killed, and came back"
done

sed -i 's/name: example/name: renamed/' /etc/cfm/cfm.yaml
holds_the_new_name() { server_tree | grep -q '"renamed"'; }
await holds_the_new_name || fail "the agent does not follow an edit of its file"

systemctl stop cfm-agent cfm-mgr
for unit in cfm-mgr cfm-agent; do
  [ "$(property "$unit" ActiveState) $(property "$unit" Result)" = "inactive success" ] ||
    fail "$unit does not end as it should"
done
echo "an edit was followed, and both ended when they were told to"

# What installed the packages before kept everything from starting. Users and groups outlive a package,
# and would be there already.
rm -f /usr/sbin/policy-rc.d
dpkg --purge cfm-agent cfm-mgr
userdel cfm-mgr
groupdel cfm
dpkg --install /packages/cfm-mgr_*.deb /packages/cfm-agent_*.deb
{ is_active cfm-mgr && [ "$(property cfm-mgr NRestarts)" -eq 0 ]; } ||
  fail "the server does not start at once when it is installed"
! is_active cfm-agent || fail "the agent starts when it is installed"
echo "installed into the running system, the server started at once"
