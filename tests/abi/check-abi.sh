#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# A library keeps the binary interface of a release.
#
# usage: check-abi.sh SOURCE-DIR DUMP LIBRARY
set -euo pipefail

source_dir=$1
dump=$2
library=$3
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT

# This project's functions in virtual tables, with their slots. abidiff takes no notice when two
# change places.
virtual_slots() {
  sed -nE "/vtable-offset='[0-9]/{
    s/.*(vtable-offset='[0-9]+').*/\1/
    N
    s/\n.* (mangled-name='_ZNK?(3cfm|13client_server)[^']*').*/ \1/p
  }" "$1" | LC_ALL=C sort
}

# Two dumps compare like with like: abidiff would read more from the library than abi-dump writes.
"$source_dir/scripts/abi-dump" "$library" "$scratch/now.abi"
abidiff --suppressions "$source_dir/packaging/abi/suppressions.ini" --no-show-locs \
  "$dump" "$scratch/now.abi"
diff --unified=0 <(virtual_slots "$dump") <(virtual_slots "$scratch/now.abi")
