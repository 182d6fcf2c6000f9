#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# The unit as systemd itself judges it, and the user and group that it needs. Status 77: skipped.
#
# usage: check-unit.sh UNIT SYSUSERS PROGRAM [CAPABILITY]
#   CAPABILITY   the only one that the program gets; otherwise none
set -euo pipefail

unit=$1
sysusers=$2
program=$3
capability=${4-}
name=$(basename "$unit")

command -v systemd-analyze >/dev/null || {
  echo "skipped: there is no systemd-analyze"
  exit 77
}
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT

# The program is not where it is going to be installed.
sed "s#^ExecStart=[^ ]*#ExecStart=$program#" "$unit" >"$scratch/$name"
# Its manual page is not, either.
verdict=$(systemd-analyze verify --man=no "$scratch/$name" 2>&1 | grep -F "$name" || true)
if [ -n "$verdict" ]; then
  echo "systemd-analyze verify: $verdict" >&2
  exit 1
fi

for setting in AmbientCapabilities CapabilityBoundingSet; do
  capabilities=$(sed -n "s/^$setting=//p" "$unit")
  if [ "$capabilities" != "$capability" ]; then
    echo "$setting: '$capabilities', expected '$capability' alone" >&2
    exit 1
  fi
done

# What is left open, from 0 to 10; the scale of older releases differs a little.
if systemd-analyze security --help 2>&1 | grep -q -e --offline; then
  systemd-analyze security --offline=yes --threshold=25 "$scratch/$name" >"$scratch/said" || {
    cat "$scratch/said" >&2
    exit 1
  }
fi

if command -v systemd-sysusers >/dev/null; then
  wanted=$(systemd-sysusers --dry-run --root="$scratch" "$sysusers" 2>&1) || {
    echo "systemd-sysusers: $wanted" >&2
    exit 1
  }
  user=$(sed -n 's/^User=//p' "$unit")
  case "$wanted" in
    *"user '$user'"*) ;;
    *)
      echo "systemd-sysusers makes no user $user: $wanted" >&2
      exit 1
      ;;
  esac
fi
